#include "platform/posix/regular_file.h"

#include <fcntl.h>
#include <sys/stat.h>

namespace pw {

Descriptor OpenRegularFile(const std::string& path, int flags, mode_t rights) {
  struct stat status {};
  const bool there = ((flags & O_NOFOLLOW) != 0 ? lstat : stat)(path.c_str(), &status) == 0;
  if (there && !S_ISREG(status.st_mode)) {
    errno = kNoRegularFile;
    return {};
  }
  const auto openWith = [&](int more) {
    return Descriptor(Uninterrupted(
        [&] { return open(path.c_str(), flags | more | O_CLOEXEC | O_NOCTTY, rights); }));
  };
  // Something else may have come into its place since, for which this doesn't wait.
  Descriptor descriptor = openWith(O_NONBLOCK);
  if (!descriptor.IsOpen() && errno == EWOULDBLOCK && there) descriptor = openWith(0);
  if (!descriptor.IsOpen()) return descriptor;
  if (fstat(descriptor.Number(), &status) == 0 && S_ISREG(status.st_mode)) return descriptor;
  descriptor.Close();
  errno = kNoRegularFile;
  return descriptor;
}

}  // namespace pw
