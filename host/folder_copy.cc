#include "host/folder_copy.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <string>

#include "host/native_file.h"
#include "host/traceless.h"
#include "platform/posix/descriptor.h"

namespace pw {
namespace {

namespace fs = std::filesystem;

bool CopyBytes(int from, int to) {
  char piece[1 << 16];
  for (;;) {
    const ssize_t count = Uninterrupted([&] { return ::read(from, piece, sizeof piece); });
    if (count <= 0) return count == 0;
    for (ssize_t done = 0; done < count;) {
      const ssize_t written = Uninterrupted(
          [&] { return ::write(to, piece + done, static_cast<std::size_t>(count - done)); });
      if (written < 0) return false;
      done += written;
    }
  }
}

// 0, or the error that stopped it. What isn't a regular file, or has gone meanwhile, is left out.
int CopyFile(int folder, const char* name, const fs::path& target) {
  struct stat status {};
  if (::fstatat(folder, name, &status, 0) != 0) return errno == ENOENT ? 0 : errno;
  if (!S_ISREG(status.st_mode)) return 0;
  // Should a pipe have taken the name since, it must not hold us up.
  const Descriptor from = OpenLeavingNoTrace(folder, name, O_NONBLOCK);
  if (!from.IsOpen()) return errno == ENOENT ? 0 : errno;
  if (::fstat(from.Number(), &status) != 0) return errno;
  if (!S_ISREG(status.st_mode)) return 0;

  // Always writable, as the module opens files for writing even where it only reads.
  Descriptor to(::open(target.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, 0600));
  if (!to.IsOpen() || !CopyBytes(from.Number(), to.Number())) return errno;
  const timespec times[2] = {status.st_atim, status.st_mtim};
  if (::futimens(to.Number(), times) != 0 || !to.Close()) return errno;
  return 0;
}

}  // namespace

std::optional<Failure> CopyRegularFiles(const fs::path& original, const fs::path& copy) {
  const Descriptor folder = OpenLeavingNoTrace(AT_FDCWD, original.c_str(), O_DIRECTORY);
  if (!folder.IsOpen()) return SystemFailure(original, errno);
  const auto names = NamesLeavingNoTrace(original);
  if (!names) return names.Why();
  for (const std::string& name : *names) {
    const int error = CopyFile(folder.Number(), name.c_str(), copy / name);
    if (error != 0) return SystemFailure(original / name, error);
  }
  return {};
}

}  // namespace pw
