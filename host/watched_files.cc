#include "host/watched_files.h"

#include <algorithm>
#include <string_view>
#include <utility>

namespace pw {

class WatchedFiles::WatchedFile : public FileWrapper {
 public:
  WatchedFile(std::unique_ptr<File> target, WatchedFiles& files, std::string path)
      : FileWrapper(std::move(target)), files(files), path(std::move(path)) {}

  bool Write(std::string_view bytes) override { return Watch(FileWrapper::Write(bytes)); }
  bool Truncate() override { return Watch(FileWrapper::Truncate()); }

 private:
  bool Watch(bool isDone) {
    if (!isDone) files.Remember(path);
    return isDone;
  }

  WatchedFiles& files;
  std::string path;
};

std::unique_ptr<File> WatchedFiles::Open(const std::string& path, OpenMode mode, Sharing sharing) {
  auto file = FilesWrapper::Open(path, mode, sharing);
  if (file != nullptr) return std::make_unique<WatchedFile>(std::move(file), *this, path);
  if (mode == OpenMode::kCreateAlways || mode == OpenMode::kOpenAlways) Remember(path);
  return nullptr;
}

void WatchedFiles::Remember(const std::string& path) {
  if (std::find(unwritten.begin(), unwritten.end(), path) == unwritten.end()) {
    unwritten.push_back(path);
  }
}

}  // namespace pw
