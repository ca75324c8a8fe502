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

// The rights that a file under that name has, or that a new one gets.
mode_t RightsFor(const std::filesystem::path& file) {
  struct stat status {};
  if (::stat(file.c_str(), &status) == 0) return status.st_mode & 07777;
  const mode_t mask = ::umask(0);
  ::umask(mask);
  return 0666 & ~mask;
}

// Both give 0, or the error that stopped them.
int WriteInto(const std::filesystem::path& special, std::string_view bytes) {
  Descriptor descriptor(::open(special.c_str(), O_WRONLY | O_CLOEXEC | O_NOCTTY));
  if (!descriptor.IsOpen() || !WriteAll(descriptor.Number(), bytes)) return errno;
  return descriptor.Close() ? 0 : errno;
}

int WriteBeside(const std::filesystem::path& target, std::string_view bytes, bool isSynced) {
  std::string temporary = TemporaryBeside(target);
  Descriptor descriptor(::mkostemp(temporary.data(), O_CLOEXEC));
  if (!descriptor.IsOpen()) return errno;
  int error = 0;
  if (!WriteAll(descriptor.Number(), bytes) ||
      ::fchmod(descriptor.Number(), RightsFor(target)) != 0 ||
      (isSynced && ::fsync(descriptor.Number()) != 0) || !descriptor.Close() ||
      ::rename(temporary.c_str(), target.c_str()) != 0) {
    error = errno;
    ::unlink(temporary.c_str());
  }
  return error;
}

Outcome<Done> Write(const std::filesystem::path& file, std::string_view bytes, bool isSynced) {
  struct stat status {};
  const bool isThere = ::stat(file.c_str(), &status) == 0;
  if (!isThere && errno != ENOENT) return SystemFailure(file, errno);
  if (isThere && S_ISDIR(status.st_mode)) return SystemFailure(file, EISDIR);
  const bool isSpecial = isThere && !S_ISREG(status.st_mode);
  const int error =
      isSpecial ? WriteInto(file, bytes) : WriteBeside(BehindLinks(file), bytes, isSynced);
  if (error != 0) return SystemFailure(file, error);
  return Done{};
}

constexpr std::string_view kTemporary = ".pairwise-";
constexpr std::string_view kPlaces = "XXXXXX";

}  // namespace

Failure SystemFailure(const std::filesystem::path& file, int error) {
  return {file.string() + ": " + std::generic_category().message(error)};
}

bool WriteAll(int descriptor, std::string_view bytes) {
  while (!bytes.empty()) {
    const ssize_t written =
        Uninterrupted([&] { return ::write(descriptor, bytes.data(), bytes.size()); });
    if (written < 0) return false;
    bytes.remove_prefix(static_cast<std::size_t>(written));
  }
  return true;
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

bool HaveSameBytes(const std::filesystem::path& one, const std::filesystem::path& other) {
  std::error_code error;
  std::error_code otherError;
  const std::uintmax_t size = std::filesystem::file_size(one, error);
  if (size != std::filesystem::file_size(other, otherError) || error || otherError) return false;
  const auto bytes = ReadNativeFile(one, size);
  const auto otherBytes = ReadNativeFile(other, size);
  return bytes && otherBytes && *bytes == *otherBytes;
}

Outcome<Done> WriteNativeFile(const std::filesystem::path& file, std::string_view bytes) {
  return Write(file, bytes, false);
}

Outcome<Done> WriteSyncedFile(const std::filesystem::path& file, std::string_view bytes) {
  auto written = Write(file, bytes, true);
  if (!written) return written;
  if (auto failure = SyncFiles(file.parent_path(), {})) return *failure;
  return written;
}

std::optional<Failure> SyncFiles(const std::filesystem::path& folder,
                                 const std::vector<std::string>& names) {
  // All are on their way before the first is waited for, which spares the disk most of the turns.
  for (const std::string& name : names) {
    const Descriptor file(::open((folder / name).c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK));
    if (file.IsOpen()) ::sync_file_range(file.Number(), 0, 0, SYNC_FILE_RANGE_WRITE);
  }
  for (const std::string& name : names) {
    const Descriptor file(::open((folder / name).c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK));
    if (!file.IsOpen() || ::fsync(file.Number()) != 0) return SystemFailure(folder / name, errno);
  }
  const Descriptor opened(::open(folder.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
  if (!opened.IsOpen()) return SystemFailure(folder, errno);
  if (::fsync(opened.Number()) == 0 || errno == EINVAL) return std::nullopt;
  return SystemFailure(folder, errno);
}

std::optional<Failure> WhyNotMakeable(const std::filesystem::path& file) {
  struct stat status {};
  if (::lstat(file.c_str(), &status) == 0) return std::nullopt;
  if (errno != ENOENT) return SystemFailure(file, errno);
  const std::filesystem::path folder = file.parent_path();
  if (::faccessat(AT_FDCWD, folder.c_str(), W_OK | X_OK, AT_EACCESS) == 0) return std::nullopt;
  return SystemFailure(file, errno);
}

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

std::string TemporaryBeside(const std::filesystem::path& target) {
  return (target.parent_path() / kTemporary).concat(kPlaces).string();
}

bool IsTemporaryName(std::string_view name) {
  return name.starts_with(kTemporary) && name.size() == kTemporary.size() + kPlaces.size();
}

}  // namespace pw
