#include "platform/posix/posix_file.h"

#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <limits>

namespace pw {
namespace {

constexpr std::int64_t kNanoseconds = 1'000'000'000;

std::optional<struct stat> StatusOf(const Descriptor& descriptor) {
  struct stat status {};
  if (fstat(descriptor.Number(), &status) != 0) return std::nullopt;
  return status;
}

}  // namespace

// In blocks, so that a file's apparent size alone takes no memory: it may be nearly all holes, or
// shrink meanwhile.
std::string PosixFile::Read(std::size_t count) {
  constexpr std::size_t kBlock = 256 << 10;
  constexpr std::size_t kReservedAtOnce = 256 << 20;
  const auto size = Size();
  if (!size || *size <= position) return {};
  const auto wanted = static_cast<std::size_t>(std::min<std::uint64_t>(count, *size - position));
  std::string bytes;
  bytes.reserve(std::min(wanted, kReservedAtOnce));
  std::string block(std::min(wanted, kBlock), '\0');
  while (bytes.size() < wanted) {
    const ssize_t got = Uninterrupted([&] {
      return pread(descriptor.Number(), block.data(), std::min(block.size(), wanted - bytes.size()),
                   static_cast<off_t>(position));
    });
    if (got <= 0) break;
    bytes.append(block, 0, static_cast<std::size_t>(got));
    position += static_cast<std::uint64_t>(got);
  }
  return bytes;
}

bool PosixFile::Write(std::string_view bytes) {
  while (!bytes.empty()) {
    const ssize_t put = Uninterrupted([&] {
      return pwrite(descriptor.Number(), bytes.data(), bytes.size(), static_cast<off_t>(position));
    });
    if (put <= 0) return false;
    bytes.remove_prefix(static_cast<std::size_t>(put));
    position += static_cast<std::uint64_t>(put);
  }
  return true;
}

bool PosixFile::Seek(std::uint64_t offset) {
  if (offset > static_cast<std::uint64_t>(std::numeric_limits<off_t>::max())) return false;
  position = offset;
  return true;
}

bool PosixFile::Truncate() {
  return Uninterrupted(
             [&] { return ftruncate(descriptor.Number(), static_cast<off_t>(position)); }) == 0;
}

std::optional<std::uint64_t> PosixFile::Size() {
  const auto status = StatusOf(descriptor);
  if (!status) return std::nullopt;
  return static_cast<std::uint64_t>(status->st_size);
}

std::optional<std::int64_t> PosixFile::LastWriteTime() {
  const auto status = StatusOf(descriptor);
  if (!status) return std::nullopt;
  const std::int64_t seconds = status->st_mtim.tv_sec;
  constexpr std::int64_t kLimit = std::numeric_limits<std::int64_t>::max() / kNanoseconds;
  if (seconds >= kLimit || seconds <= -kLimit) return std::nullopt;
  return seconds * kNanoseconds + status->st_mtim.tv_nsec;
}

}  // namespace pw
