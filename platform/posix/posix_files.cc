#include "platform/posix/posix_files.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <optional>
#include <utility>

#include "platform/posix/descriptor.h"
#include "platform/posix/folder_reader.h"
#include "platform/posix/posix_file.h"
#include "platform/posix/regular_file.h"
#include "platform/posix/sharing_lock.h"

namespace pw {
namespace {

constexpr mode_t kRightsMask = 0777;
constexpr std::size_t kCopyBlock = 65536;

int FlagsFor(OpenMode mode) {
  switch (mode) {
    case OpenMode::kRead:
      return O_RDONLY;
    case OpenMode::kReadWriteExisting:
      return O_RDWR;
    case OpenMode::kOpenAlways:
    case OpenMode::kCreateAlways:
      break;
  }
  return O_RDWR | O_CREAT;
}

// The status of a regular file or a folder; nothing for what is none.
std::optional<struct stat> StatusAt(int folder, const char* path) {
  struct stat status {};
  if (fstatat(folder, path, &status, 0) != 0) return std::nullopt;
  if (!S_ISREG(status.st_mode) && !S_ISDIR(status.st_mode)) return std::nullopt;
  return status;
}

std::optional<struct stat> StatusOf(const std::string& path) {
  return StatusAt(AT_FDCWD, path.c_str());
}

bool MayWrite(const std::string& path) {
  return faccessat(AT_FDCWD, path.c_str(), W_OK, AT_EACCESS) == 0;
}

bool CopyBytes(const Descriptor& from, Descriptor to) {
  std::array<char, kCopyBlock> block;
  PosixFile target(std::move(to));
  while (true) {
    const ssize_t got =
        Uninterrupted([&] { return read(from.Number(), block.data(), block.size()); });
    if (got <= 0) return got == 0 && target.Close();
    if (!target.Write({block.data(), static_cast<std::size_t>(got)})) return false;
  }
}

}  // namespace

PosixFiles::PosixFiles(const PathTable& table, std::string modulePath)
    : table(table), modulePath(std::move(modulePath)) {}

std::unique_ptr<File> PosixFiles::Open(const std::string& path, OpenMode mode, Sharing sharing) {
  const auto native = table.Translate(path);
  const bool writes = mode != OpenMode::kRead;
  if (!native || (writes && !table.MayChange(*native))) return nullptr;
  Descriptor descriptor = OpenRegularFile(native->path, FlagsFor(mode));
  if (!descriptor.IsOpen() || !TakeSharing(descriptor.Number(), writes, sharing)) return nullptr;
  auto file = std::make_unique<PosixFile>(std::move(descriptor));
  // Only now: a file that may not be opened must keep its content.
  if (mode == OpenMode::kCreateAlways && !file->Truncate()) return nullptr;
  return file;
}

bool PosixFiles::Exists(const std::string& path) {
  const auto native = table.Translate(path);
  return native && StatusOf(native->path);
}

bool PosixFiles::IsReadableAndWritable(const std::string& path) {
  const auto native = table.Translate(path);
  return native && StatusOf(native->path) && table.MayChange(*native) &&
         faccessat(AT_FDCWD, native->path.c_str(), R_OK | W_OK, AT_EACCESS) == 0;
}

// The name goes from its folder. What it leads to, where it is a link, stays, but is lost by that
// name, and so must be such as may be changed too.
bool PosixFiles::MayRemoveName(const NativePath& native) const {
  const std::string folder = native.path.substr(0, native.path.rfind('/') + 1);
  return table.MayChange(native) && table.MayChange({folder, native.readOnly, native.start});
}

bool PosixFiles::Delete(const std::string& path) {
  const auto native = table.Translate(path);
  if (!native || !MayRemoveName(*native)) return false;
  const auto status = StatusOf(native->path);
  if (!status || S_ISDIR(status->st_mode) || !MayWrite(native->path)) return false;
  const Descriptor descriptor = OpenRegularFile(native->path, O_RDONLY);
  if (descriptor.IsOpen() && IsOpenElsewhere(descriptor.Number())) return false;
  return unlink(native->path.c_str()) == 0;
}

bool PosixFiles::CopyWithoutOverwriting(const std::string& from, const std::string& to) {
  const auto source = table.Translate(from);
  const auto target = table.Translate(to);
  if (!source || !target || !table.MayChange(*target)) return false;
  const Descriptor reading = OpenRegularFile(source->path, O_RDONLY);
  if (!reading.IsOpen() || !TakeSharing(reading.Number(), false, Sharing::kReadWrite)) return false;
  struct stat status {};
  if (fstat(reading.Number(), &status) != 0) return false;
  Descriptor writing =
      OpenRegularFile(target->path, O_RDWR | O_CREAT | O_EXCL, status.st_mode & kRightsMask);
  if (!writing.IsOpen()) return false;
  if (CopyBytes(reading, std::move(writing))) return true;
  unlink(target->path.c_str());
  return false;
}

std::vector<FoundFile> PosixFiles::Find(const std::string& pattern) {
  const PatternParts parts = SplitPattern(pattern);
  const auto folder = table.Translate(parts.folder);
  std::vector<FoundFile> found;
  if (!folder) return found;
  FolderReader reader(folder->path);
  while (const dirent* entry = reader.Next()) {
    const std::string_view native = entry->d_name;
    if (native == "." || native == "..") continue;
    auto name = OrganiserName(native);
    if (!name || !MatchesPattern(*name, parts.names)) continue;
    const auto status = StatusAt(reader.Descriptor(), entry->d_name);
    if (status) found.push_back({*std::move(name), S_ISDIR(status->st_mode)});
  }
  std::sort(found.begin(), found.end(), ComesBefore);
  return found;
}

}  // namespace pw
