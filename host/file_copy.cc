#include "host/file_copy.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstdlib>
#include <string>
#include <utility>

#include "host/native_file.h"
#include "host/traceless.h"
#include "platform/posix/descriptor.h"

namespace pw {
namespace {

namespace fs = std::filesystem;

struct Original {
  fs::path file;
  Descriptor descriptor;
  struct stat status {};
};

bool MeansNothingThere(int error) {
  return error == ENOENT || error == ELOOP || error == ENOTDIR;
}

// Not open where there is no regular file.
Outcome<Original> OpenOriginal(const fs::path& file) {
  Original original;
  original.file = file;
  if (::stat(file.c_str(), &original.status) != 0) {
    if (MeansNothingThere(errno)) return original;
    return SystemFailure(file, errno);
  }
  if (!S_ISREG(original.status.st_mode)) return original;
  // Should a pipe have taken the name since, it must not hold us up.
  Descriptor opened = OpenLeavingNoTrace(AT_FDCWD, file.c_str(), O_NONBLOCK);
  if (!opened.IsOpen() && MeansNothingThere(errno)) return original;
  if (!opened.IsOpen() || ::fstat(opened.Number(), &original.status) != 0) {
    return SystemFailure(file, errno);
  }
  if (S_ISREG(original.status.st_mode)) original.descriptor = std::move(opened);
  return original;
}

std::optional<Failure> CopyBytes(const Original& original, int to, const fs::path& target) {
  char piece[1 << 16];
  for (;;) {
    const ssize_t count =
        Uninterrupted([&] { return ::read(original.descriptor.Number(), piece, sizeof piece); });
    if (count < 0) return SystemFailure(original.file, errno);
    if (count == 0) return std::nullopt;
    if (!WriteAll(to, {piece, static_cast<std::size_t>(count)})) {
      return SystemFailure(target, errno);
    }
  }
}

// As far as the user may and the file system can. The owner comes first, as its change can take
// rights away.
void GiveRights(const Original& original, int to) {
  const struct stat& status = original.status;
  const bool isOwned = ::fchown(to, status.st_uid, status.st_gid) == 0 ||
                       ::fchown(to, static_cast<uid_t>(-1), status.st_gid) == 0;
  // A group that it isn't of gets no more than the others.
  const mode_t rights = status.st_mode & 0777;
  ::fchmod(to, isOwned ? rights : (rights & 0707) | ((rights & 07) << 3 & rights));
}

std::optional<Failure> FillCopy(const Original& original, Descriptor to, const fs::path& target,
                                CopyUse use) {
  if (!to.IsOpen()) return SystemFailure(target, errno);
  if (auto failure = CopyBytes(original, to.Number(), target)) return failure;
  if (use == CopyUse::kKept) GiveRights(original, to.Number());
  const timespec times[2] = {original.status.st_atim, original.status.st_mtim};
  if (::futimens(to.Number(), times) != 0 || !to.Close()) {
    return SystemFailure(target, errno);
  }
  return std::nullopt;
}

}  // namespace

Outcome<bool> CopyFile(const fs::path& file, const fs::path& target, CopyUse use) {
  const auto original = OpenOriginal(file);
  if (!original) return original.Why();
  if (!original->descriptor.IsOpen()) return false;
  // Writable until it is filled, and in passing use for good, as the module opens files for writing
  // even where it only reads.
  Descriptor to(::open(target.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, 0600));
  if (auto failure = FillCopy(*original, std::move(to), target, use)) return *failure;
  return true;
}

std::optional<Failure> ReplaceByCopy(const fs::path& file, const fs::path& target) {
  const auto original = OpenOriginal(file);
  if (!original) return original.Why();
  if (!original->descriptor.IsOpen()) return SystemFailure(file, ENOENT);
  const fs::path replaced = BehindLinks(target);
  std::string temporary = TemporaryBeside(replaced);
  Descriptor to(::mkostemp(temporary.data(), O_CLOEXEC));
  if (!to.IsOpen()) return SystemFailure(target, errno);
  auto failure = FillCopy(*original, std::move(to), target, CopyUse::kKept);
  if (!failure && ::rename(temporary.c_str(), replaced.c_str()) != 0) {
    failure = SystemFailure(target, errno);
  }
  if (failure) ::unlink(temporary.c_str());
  return failure;
}

}  // namespace pw
