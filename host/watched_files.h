#pragma once

#include <memory>
#include <string>
#include <vector>

#include "platform/files.h"

namespace pw {

// Passes everything on, and remembers what could not be written: the module goes on without a word
// where a save fails.
class WatchedFiles : public FilesWrapper {
 public:
  explicit WatchedFiles(Files& target) : FilesWrapper(target) {}

  std::unique_ptr<File> Open(const std::string& path, OpenMode mode, Sharing sharing) override;

  // The organiser's paths of files that could not be made, or not be written whole; each once.
  const std::vector<std::string>& Unwritten() const { return unwritten; }

 private:
  class WatchedFile;

  void Remember(const std::string& path);

  std::vector<std::string> unwritten;
};

}  // namespace pw
