#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <optional>
#include <set>
#include <string>
#include <string_view>
#include <vector>

#include "platform/files.h"
#include "platform/path.h"
#include "platform/testing/memory_file.h"

namespace pw {

// Files in memory, under the organiser's paths. A drive is there once something was put on it; the
// current folder and the root without a drive always are, and each is a tree of its own.
//
// A read-only file isn't opened for writing nor deleted, and its copy is read-only too. Operations
// on paths that no file can have, in what only tests call, end the process.
class MemoryFiles : public Files {
 public:
  // Last-write times come from the clock, which isn't owned.
  explicit MemoryFiles(Clock& clock);

  // Puts a file, over one that is there, and makes the folders above it.
  void Put(const std::string& path, std::string_view bytes);
  void PutFolder(const std::string& path);

  // What a file holds; nothing if there is no such file.
  std::optional<std::string> Get(const std::string& path) const;

  // Of a file or folder that is there.
  void SetReadOnly(const std::string& path, bool readOnly);
  void SetLastWrite(const std::string& path, std::int64_t nanoseconds);

  // Faults, which last until `StopFailing`: opening this path, also for a copy; all bytes written
  // to any file after so many more; cutting any file off.
  void FailOpen(const std::string& path);
  void FailWritesAfter(std::uint64_t bytes) { disk.bytesLeft = bytes; }
  void FailTruncate() { disk.truncateFails = true; }
  void StopFailing();

  // Calls so far, failed ones too.
  std::size_t Opens() const { return opens; }
  std::size_t Writes() const { return disk.writes; }

  std::unique_ptr<File> Open(const std::string& path, OpenMode mode, Sharing sharing) override;
  bool Exists(const std::string& path) override;
  bool IsReadableAndWritable(const std::string& path) override;
  bool Delete(const std::string& path) override;
  bool CopyWithoutOverwriting(const std::string& from, const std::string& to) override;
  std::vector<FoundFile> Find(const std::string& pattern) override;
  std::string ModulePath() override { return "C:\\PairWise\\module.dll"; }

 private:
  using Node = std::shared_ptr<MemoryNode>;

  // The node of a path, or of the folder above it; null if there is none.
  Node Lookup(const std::string& path) const;
  Node LookupFolderOf(const PathParts& parts) const;
  Node Existing(const std::string& path) const;

  // The node of a path for a test, made where it is missing.
  Node Make(const std::string& path, bool folder);

  // A new empty file in a folder that is there; null if there is none, or something of that name.
  Node Create(const std::string& path);
  bool OpenFails(const std::string& path) const;

  MemoryDisk disk;
  MemoryNode top;  // its children are the roots
  std::set<std::string> failing;
  std::size_t opens = 0;
};

}  // namespace pw
