#include "host/watched_files.h"

#include <algorithm>
#include <string_view>
#include <utility>

#include "base/codepage.h"

namespace pw {
namespace {

void Remember(const std::string& path, std::vector<std::string>& paths) {
  if (std::find(paths.begin(), paths.end(), path) == paths.end()) paths.push_back(path);
}

std::string AsKnown(std::string path) {
  std::transform(path.begin(), path.end(), path.begin(), [](char c) {
    return static_cast<char>(CodePageLower(static_cast<unsigned char>(c)));
  });
  return path;
}

}  // namespace

class WatchedFiles::WatchedFile : public FileWrapper {
 public:
  WatchedFile(std::unique_ptr<File> target, WatchedFiles& files, std::string path)
      : FileWrapper(std::move(target)), files(files), path(std::move(path)) {}

  bool Write(std::string_view bytes) override { return Watch(FileWrapper::Write(bytes)); }
  bool Truncate() override { return Watch(FileWrapper::Truncate()); }

 private:
  bool Watch(bool isDone) {
    if (!isDone) Remember(path, files.unwritten);
    return isDone;
  }

  WatchedFiles& files;
  std::string path;
};

std::unique_ptr<File> WatchedFiles::Open(const std::string& path, OpenMode mode, Sharing sharing) {
  auto file = FilesWrapper::Open(path, mode, sharing);
  if (file != nullptr) {
    known.insert(AsKnown(path));
    return std::make_unique<WatchedFile>(std::move(file), *this, path);
  }
  const bool makes = mode == OpenMode::kCreateAlways || mode == OpenMode::kOpenAlways;
  // A store is loaded from a file that is there, and a save opens it anew.
  const bool saves = mode == OpenMode::kReadWriteExisting && known.contains(AsKnown(path));
  if (makes || saves) {
    Remember(path, unwritten);
  } else if (mode == OpenMode::kReadWriteExisting && IsFile(path)) {
    Remember(path, refused);
  }
  return nullptr;
}

// One that isn't there needn't go.
bool WatchedFiles::Delete(const std::string& path) {
  if (FilesWrapper::Delete(path)) {
    known.erase(AsKnown(path));
    return true;
  }
  if (IsFile(path)) Remember(path, unwritten);
  return false;
}

// What isn't there can't be copied, and what is there already stays: neither is a loss.
bool WatchedFiles::CopyWithoutOverwriting(const std::string& from, const std::string& to) {
  if (FilesWrapper::CopyWithoutOverwriting(from, to)) return true;
  if (IsFile(from) && !Exists(to)) Remember(to, unwritten);
  return false;
}

bool WatchedFiles::IsFile(const std::string& path) {
  const std::vector<FoundFile> found = Find(path);
  return std::any_of(found.begin(), found.end(), [](const FoundFile& f) { return !f.isFolder; });
}

}  // namespace pw
