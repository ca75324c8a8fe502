#pragma once

#include <memory>
#include <set>
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
  bool Delete(const std::string& path) override;
  bool CopyWithoutOverwriting(const std::string& from, const std::string& to) override;

  // The organiser's paths of files that could not be made, or not be written whole; each once. Also
  // of those that were opened before and then could not be opened for writing, and of those that
  // stayed where they were to go.
  const std::vector<std::string>& Unwritten() const { return unwritten; }

  // Those that are there and could not be opened for writing when they were to be read first; each
  // once.
  const std::vector<std::string>& Refused() const { return refused; }

 private:
  class WatchedFile;

  bool IsFile(const std::string& path);

  std::set<std::string> known;  // paths that were opened, in lower case, and not deleted since
  std::vector<std::string> unwritten;
  std::vector<std::string> refused;
};

}  // namespace pw
