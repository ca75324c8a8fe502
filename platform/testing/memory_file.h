#pragma once

#include <cstddef>
#include <cstdint>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <string_view>

#include "platform/clock.h"
#include "platform/files.h"

namespace pw {

// A file or a folder in memory.
struct MemoryNode {
  std::string name;
  bool isFolder = false;
  bool readOnly = false;
  std::string bytes;
  std::int64_t lastWrite = 0;                                   // in nanoseconds
  std::map<std::string, std::shared_ptr<MemoryNode>> children;  // by their names in lower case

  // How many have it open at all, for writing, and so that nobody else may read or write.
  struct {
    int all = 0;
    int writing = 0;
    int noReading = 0;
    int noWriting = 0;
  } open;
};

// What all files in memory share: their time, and what is to go wrong with them.
struct MemoryDisk {
  explicit MemoryDisk(Clock& clock) : clock(clock) {}

  Clock& clock;
  std::optional<std::uint64_t> bytesLeft;  // until it is full; nothing: it never is
  bool truncateFails = false;
  std::size_t writes = 0;  // calls of `Write`

  // The clock's time in nanoseconds.
  std::int64_t Now() const;
};

// An open file in memory. Node and disk must not be null, and the disk outlives it.
class MemoryFile : public File {
 public:
  // Null if those who have it open already contradict.
  static std::unique_ptr<MemoryFile> Open(std::shared_ptr<MemoryNode> node, MemoryDisk& disk,
                                          bool writes, Sharing sharing);
  ~MemoryFile() override;

  std::string Read(std::size_t count) override;
  bool Write(std::string_view text) override;
  bool Seek(std::uint64_t offset) override;
  bool Truncate() override;
  std::optional<std::uint64_t> Size() override { return node->bytes.size(); }
  std::optional<std::int64_t> LastWriteTime() override { return node->lastWrite; }

 private:
  MemoryFile(std::shared_ptr<MemoryNode> node, MemoryDisk& disk, bool writes, Sharing sharing);
  void Count(int difference);

  std::shared_ptr<MemoryNode> node;
  MemoryDisk& disk;
  bool writes;
  bool mayRead;   // others
  bool mayWrite;  // others
  std::uint64_t position = 0;
};

}  // namespace pw
