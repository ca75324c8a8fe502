#include "host/profile_lock.h"

#include <fcntl.h>
#include <sys/file.h>

#include <cerrno>
#include <utility>

#include "host/native_file.h"

namespace pw {

Outcome<ProfileLock> ProfileLock::Take(const Profile& profile) {
  const std::filesystem::path name = profile.folder / "profile.lock";
  Descriptor file(::open(name.c_str(), O_RDWR | O_CREAT | O_CLOEXEC | O_NONBLOCK, 0666));
  if (!file.IsOpen()) return SystemFailure(name, errno);
  if (::flock(file.Number(), LOCK_EX | LOCK_NB) == 0) return ProfileLock(std::move(file));
  if (errno == EWOULDBLOCK) {
    return Failure{profile.folder.string() + ": another run is changing this profile's data"};
  }
  return SystemFailure(name, errno);
}

}  // namespace pw
