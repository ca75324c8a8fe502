#pragma once

#include <chrono>
#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <optional>
#include <string>
#include <string_view>

#include "platform/posix/descriptor.h"

// A file that several processes read whenever they like, and replace as a whole under a lock.
//
// Beside a file "NAME" two kinds of names are reserved: "NAME.lock" for its lock, and ".NAME.new-"
// with a number behind it for what is to take its place.
namespace pw {

// Tells one content of a file from another. Two contents can have the same stamp only if they were
// written within a few milliseconds, the step of the file system's time.
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
  std::optional<FileStamp> stamp;    // of these bytes; nothing if the file is missing
  std::optional<std::string> error;  // why it can't be read, where it is there
};

// The whole content of a regular file of at most `limit` bytes. Should somebody write into it
// meanwhile it is read again, and in the end that is an error: no half of a content is given.
SharedFileContent ReadSharedFile(const std::filesystem::path& file, std::size_t limit);

// Whether this process may replace the file, or make it, and may open its lock.
bool MayReplace(const std::filesystem::path& file);

// Puts other bytes in the place of the content that has this stamp, or of none. Whoever opens the
// file sees the old content or the new one, also after a crash of the machine.
//
// The file keeps its mode, and its owner and group as far as allowed; where it gets another group
// that one has no rights. Returns what failed, a content of another stamp among it; then what stood
// there still stands. To be called under the lock.
std::optional<std::string> ReplaceSharedFile(const std::filesystem::path& file,
                                             std::string_view bytes,
                                             const std::optional<FileStamp>& stamp);

// Held from construction, which waits for it, to destruction. It is the lock of a file beside the
// one that is replaced, which stays, since to remove it would pull it away under somebody who just
// waits for it. That file is open to all who may change the other, whoever made it.
class SharedFileLock {
 public:
  static constexpr std::chrono::milliseconds kLongestWait{10'000};

  explicit SharedFileLock(const std::filesystem::path& file,
                          std::chrono::milliseconds longestWait = kLongestWait);

  // Why it isn't held; nothing if it is.
  const std::optional<std::string>& Error() const { return error; }

 private:
  Descriptor descriptor;
  std::optional<std::string> error;
};

}  // namespace pw
