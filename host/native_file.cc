#include "host/native_file.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstdlib>
#include <system_error>

#include "host/traceless.h"
#include "platform/posix/descriptor.h"

namespace pw {
namespace {

// Whether all bytes were written; errno tells why not.
bool WriteAll(int descriptor, std::string_view bytes) {
  while (!bytes.empty()) {
    const ssize_t written =
        Uninterrupted([&] { return ::write(descriptor, bytes.data(), bytes.size()); });
    if (written < 0) return false;
    bytes.remove_prefix(static_cast<std::size_t>(written));
  }
  return true;
}

// The rights that a file under that name has, or that a new one gets.
mode_t RightsFor(const std::filesystem::path& file) {
  struct stat status {};
  if (::stat(file.c_str(), &status) == 0) return status.st_mode & 07777;
  const mode_t mask = ::umask(0);
  ::umask(mask);
  return 0666 & ~mask;
}

// What the links of that name lead to, whether it is there or not.
std::filesystem::path BehindLinks(std::filesystem::path file) {
  constexpr int kMostLinks = 40;
  for (int i = 0; i < kMostLinks; ++i) {
    std::error_code notALink;
    const std::filesystem::path target = std::filesystem::read_symlink(file, notALink);
    if (notALink) break;
    file = file.parent_path() / target;
  }
  return file;
}

// Both give 0, or the error that stopped them.
int WriteInto(const std::filesystem::path& special, std::string_view bytes) {
  Descriptor descriptor(::open(special.c_str(), O_WRONLY | O_CLOEXEC | O_NOCTTY));
  if (!descriptor.IsOpen() || !WriteAll(descriptor.Number(), bytes)) return errno;
  return descriptor.Close() ? 0 : errno;
}

int WriteBeside(const std::string& pattern, const std::filesystem::path& target,
                std::string_view bytes) {
  std::string temporary = pattern;
  Descriptor descriptor(::mkostemp(temporary.data(), O_CLOEXEC));
  if (!descriptor.IsOpen()) return errno;
  int error = 0;
  if (!WriteAll(descriptor.Number(), bytes) ||
      ::fchmod(descriptor.Number(), RightsFor(target)) != 0 || !descriptor.Close() ||
      ::rename(temporary.c_str(), target.c_str()) != 0) {
    error = errno;
    ::unlink(temporary.c_str());
  }
  return error;
}

}  // namespace

Failure SystemFailure(const std::filesystem::path& file, int error) {
  return {file.string() + ": " + std::generic_category().message(error)};
}

Outcome<std::string> ReadNativeFile(const std::filesystem::path& file, std::uintmax_t limit) {
  // A pipe without a writer must not hold us up.
  const Descriptor descriptor = OpenLeavingNoTrace(AT_FDCWD, file.c_str(), O_NONBLOCK);
  if (!descriptor.IsOpen()) return SystemFailure(file, errno);
  struct stat status {};
  if (::fstat(descriptor.Number(), &status) != 0) return SystemFailure(file, errno);
  if (S_ISDIR(status.st_mode)) return SystemFailure(file, EISDIR);
  if (!S_ISREG(status.st_mode)) return Failure{file.string() + ": not a regular file"};

  std::string bytes;
  char piece[1 << 16];
  for (;;) {
    const ssize_t count =
        Uninterrupted([&] { return ::read(descriptor.Number(), piece, sizeof piece); });
    if (count < 0) return SystemFailure(file, errno);
    if (count == 0) return bytes;
    bytes.append(piece, static_cast<std::size_t>(count));
    if (bytes.size() > limit) return Failure{file.string() + ": too large"};
  }
}

Outcome<Done> WriteNativeFile(const std::filesystem::path& file, std::string_view bytes) {
  struct stat status {};
  const bool isThere = ::stat(file.c_str(), &status) == 0;
  if (!isThere && errno != ENOENT) return SystemFailure(file, errno);
  if (isThere && S_ISDIR(status.st_mode)) return SystemFailure(file, EISDIR);
  int error = 0;
  if (isThere && !S_ISREG(status.st_mode)) {
    error = WriteInto(file, bytes);
  } else {
    const std::filesystem::path target = BehindLinks(file);
    error = WriteBeside(target.string() + ".XXXXXX", target, bytes);
  }
  if (error != 0) return SystemFailure(file, error);
  return Done{};
}

}  // namespace pw
