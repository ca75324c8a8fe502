#pragma once

#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <optional>
#include <string>
#include <string_view>

#include "platform/posix/descriptor.h"

// A file that several processes read whenever they like, and replace as a whole under a lock.
namespace pw {

// Tells one content of a file from another. Two that are equal are of the same content.
struct FileStamp {
  std::uint64_t device = 0;
  std::uint64_t number = 0;  // the inode
  std::int64_t size = 0;
  std::int64_t writeSeconds = 0;
  std::int64_t writeNanoseconds = 0;
  std::int64_t changeSeconds = 0;
  std::int64_t changeNanoseconds = 0;

  friend bool operator==(const FileStamp&, const FileStamp&) = default;
};

// Nothing if there is no such file.
std::optional<FileStamp> StampOf(const std::filesystem::path& file);

struct SharedFileContent {
  std::string bytes;                 // none if the file is missing
  std::optional<std::string> error;  // why it can't be read, where it is there
};

// The whole content of a regular file of at most `limit` bytes.
SharedFileContent ReadSharedFile(const std::filesystem::path& file, std::size_t limit);

// Whether this process may replace the file, or make it.
bool MayReplace(const std::filesystem::path& file);

// Puts other bytes in the file's place. Whoever opens it sees the old content or the new one, also
// after a crash of the machine. The file keeps its mode, and its owner as far as allowed. Returns
// what failed; then the old content still stands. To be called under the lock.
std::optional<std::string> ReplaceSharedFile(const std::filesystem::path& file,
                                             std::string_view bytes);

// Held from construction, which waits for it, to destruction. It is the lock of a file beside the
// one that is replaced (its name and ".lock"), which stays, since to remove it would pull it away
// under somebody who just waits for it.
class SharedFileLock {
 public:
  explicit SharedFileLock(const std::filesystem::path& file);

  bool IsHeld() const { return descriptor.IsOpen(); }

 private:
  Descriptor descriptor;
};

}  // namespace pw
