#include "platform/testing/memory_file.h"

#include <algorithm>
#include <limits>
#include <utility>

namespace pw {
namespace {

constexpr std::uint64_t kLargestFile = 1U << 28;  // so that a wild seek doesn't fill the memory

}  // namespace

std::int64_t MemoryDisk::Now() const {
  constexpr std::int64_t kNanoseconds = 1'000'000'000;
  constexpr std::int64_t kLimit = std::numeric_limits<std::int64_t>::max() / kNanoseconds;
  return std::clamp(clock.Now(), -kLimit, kLimit) * kNanoseconds;
}

std::unique_ptr<MemoryFile> MemoryFile::Open(std::shared_ptr<MemoryNode> node, MemoryDisk& disk,
                                             bool writes, Sharing sharing) {
  const auto before = node->open;
  std::unique_ptr<MemoryFile> file(new MemoryFile(std::move(node), disk, writes, sharing));
  const bool contradicted = before.noReading > 0 || (writes && before.noWriting > 0) ||
                            (!file->mayRead && before.all > 0) ||
                            (!file->mayWrite && before.writing > 0);
  return contradicted ? nullptr : std::move(file);
}

MemoryFile::MemoryFile(std::shared_ptr<MemoryNode> node, MemoryDisk& disk, bool writes,
                       Sharing sharing)
    : node(std::move(node)),
      disk(disk),
      writes(writes),
      mayRead(sharing == Sharing::kRead || sharing == Sharing::kReadWrite),
      mayWrite(sharing == Sharing::kWrite || sharing == Sharing::kReadWrite) {
  Count(1);
}

MemoryFile::~MemoryFile() {
  Count(-1);
}

void MemoryFile::Count(int difference) {
  node->open.all += difference;
  if (writes) node->open.writing += difference;
  if (!mayRead) node->open.noReading += difference;
  if (!mayWrite) node->open.noWriting += difference;
}

std::string MemoryFile::Read(std::size_t count) {
  if (position >= node->bytes.size()) return {};
  std::string read = node->bytes.substr(static_cast<std::size_t>(position), count);
  position += read.size();
  return read;
}

bool MemoryFile::Write(std::string_view text) {
  if (text.empty()) return true;
  ++disk.writes;
  if (!writes || position + text.size() > kLargestFile) return false;
  const std::string_view fits = disk.bytesLeft ? text.substr(0, *disk.bytesLeft) : text;
  if (disk.bytesLeft) *disk.bytesLeft -= fits.size();
  const auto start = static_cast<std::size_t>(position);
  if (!fits.empty()) {
    node->bytes.resize(std::max(node->bytes.size(), start + fits.size()));
    std::copy(fits.begin(), fits.end(), node->bytes.begin() + static_cast<std::ptrdiff_t>(start));
    node->lastWrite = disk.Now();
  }
  position += fits.size();
  return fits.size() == text.size();
}

bool MemoryFile::Seek(std::uint64_t offset) {
  if (offset > static_cast<std::uint64_t>(std::numeric_limits<std::int64_t>::max())) return false;
  position = offset;
  return true;
}

bool MemoryFile::Truncate() {
  if (!writes || disk.truncateFails || position > kLargestFile) return false;
  node->bytes.resize(static_cast<std::size_t>(position));
  node->lastWrite = disk.Now();
  return true;
}

}  // namespace pw
