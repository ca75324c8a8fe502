#pragma once

#include <chrono>
#include <cstdint>
#include <filesystem>
#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <set>
#include <string>

#include "platform/posix/registry_text.h"
#include "platform/posix/shared_file.h"
#include "platform/registry.h"

namespace pw {

enum class RegistryMode : std::uint8_t {
  kReadWrite,
  kReadOnly,  // nothing can be opened for writing
  kOverlay,   // the file is read only, and changes stay in memory
};

struct RegistryStoreOptions {
  std::filesystem::path file;
  RegistryMode mode = RegistryMode::kReadWrite;

  // Told one line for each thing that is wrong, "FILE:LINE: what" where it is a line of the file.
  // May be empty.
  std::function<void(const std::string&)> warn;

  // How long to wait for another process that is just saving.
  std::chrono::milliseconds lockWait = SharedFileLock::kLongestWait;
};

// The registry in a text file, as the registry editor exports it (registry_text.h).
//
// A missing file is an empty registry; the first write makes it, in version 5.00 and UTF-16, as the
// registry editor itself would. Opening a key reads the file again if it has changed. What is
// written is seen at once by all keys of this registry, and is in the file when the key is closed,
// at the latest: closing one brings all changes there. Under a lock the file is then read again,
// the changes made here are made in it, and it is replaced, so that what others wrote meanwhile
// stays. Should that fail the reason is told to `warn` and by `SaveFailure`, and the changes stay
// for the next close.
//
// A file that was found empty or missing, though it has held a registry before, is taken for one
// that somebody is just about to write: it is an error, and nothing is saved over it.
//
// It can't hold names that can't be kept in a line (`IsRegistryLine`).
class PosixRegistry : public Registry {
 public:
  explicit PosixRegistry(RegistryStoreOptions options);
  PosixRegistry(const PosixRegistry&) = delete;
  PosixRegistry& operator=(const PosixRegistry&) = delete;

  // Why the file can't be used, in a line that names it; nothing if it can. No key opens as long as
  // there is a reason, and the file is never written.
  std::optional<std::string> Error() const { return error; }

  // Why changes that were made aren't in the file, in a line that names it, as of the last close of
  // a key that was open for writing; nothing if they are.
  std::optional<std::string> SaveFailure() const { return saveFailure; }

  std::unique_ptr<RegistryKey> Open(const std::string& path, RegistryAccess access) override;
  std::unique_ptr<RegistryKey> Create(const std::string& path) override;

 private:
  class Key;

  // A value that was set, or without a name a key that was made.
  struct Change {
    std::string path;
    std::optional<std::string> name;
    RegistryValue value;
  };

  void Refresh();
  void Read();
  SharedFileContent ReadFile() const;
  bool MayWrite() const;
  bool Apply(const Change& change);
  bool Set(const Change& change);
  void Flush();
  std::optional<std::string> Save();
  void Warn(const std::string& line);

  RegistryStoreOptions options;
  std::filesystem::path file;  // absolute, and behind the links that led to a file or folder

  RegistryText text;               // of the file, with the changes made
  std::optional<FileStamp> stamp;  // of the file when it was read or written
  bool heldRegistry = false;       // it wasn't empty then
  std::optional<std::string> error;
  std::optional<std::string> saveFailure;
  std::map<std::string, Change> changes;  // not in the file yet, one for each key and value
  std::set<std::string> warned;           // no line is told twice
};

}  // namespace pw
