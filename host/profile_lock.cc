#include "host/profile_lock.h"

#include <fcntl.h>
#include <sys/file.h>

#include <cerrno>
#include <utility>

#include "host/data_places.h"
#include "host/native_file.h"

namespace pw {
namespace {

std::filesystem::path LockOf(const Profile& profile) {
  return profile.folder / "profile.lock";
}

// `kind` is LOCK_EX, or LOCK_SH to see whether another has that.
bool Lock(const Descriptor& file, int kind) {
  return ::flock(file.Number(), kind | LOCK_NB) == 0;
}

}  // namespace

Outcome<ProfileLock> ProfileLock::Take(const Profile& profile) {
  const std::filesystem::path name = LockOf(profile);
  Descriptor file(::open(name.c_str(), O_RDWR | O_CREAT | O_CLOEXEC | O_NONBLOCK, 0666));
  if (!file.IsOpen()) return SystemFailure(name, errno);
  if (Lock(file, LOCK_EX)) return ProfileLock(std::move(file));
  if (errno == EWOULDBLOCK) {
    return Failure{profile.folder.string() + ": another run is changing this profile's data"};
  }
  return SystemFailure(name, errno);
}

bool ProfileLock::IsHeld(const Profile& profile) {
  const Descriptor file(::open(LockOf(profile).c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK));
  return file.IsOpen() && !Lock(file, LOCK_SH) && errno == EWOULDBLOCK;
}

Outcome<DataLock> DataLock::Take(const Profile& profile) {
  const auto places = DataPlaces(profile);
  if (!places) return places.Why();
  DataLock lock;
  for (const DataPlace& place : *places) {
    Descriptor folder(::open(place.folder.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
    if (!folder.IsOpen()) continue;
    if (!Lock(folder, LOCK_EX) && errno == EWOULDBLOCK) {
      return Failure{place.folder.string() +
                     ": a run of another profile is changing the files in it; nothing was done"};
    }
    lock.folders.push_back(std::move(folder));
  }
  return lock;
}

}  // namespace pw
