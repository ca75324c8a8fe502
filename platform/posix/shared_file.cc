#include "platform/posix/shared_file.h"

#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cstdio>
#include <system_error>
#include <thread>

#include "platform/posix/folder_reader.h"
#include "platform/posix/regular_file.h"

namespace pw {
namespace {

constexpr int kMostTries = 5;
constexpr std::chrono::milliseconds kPause{10};

std::string LastError(const std::string& what) {
  return what + ": " + std::generic_category().message(errno);
}

std::filesystem::path FolderOf(const std::filesystem::path& file) {
  return file.has_parent_path() ? file.parent_path() : std::filesystem::path(".");
}

std::string LockNameOf(const std::filesystem::path& file) {
  return file.native() + ".lock";
}

std::string TemporaryPrefix(const std::filesystem::path& file) {
  return "." + file.filename().native() + ".new-";
}

FileStamp StampFrom(const struct stat& status) {
  return {status.st_dev,         status.st_ino,          status.st_size,
          status.st_mtim.tv_sec, status.st_mtim.tv_nsec, status.st_ctim.tv_sec,
          status.st_ctim.tv_nsec};
}

// Reads up to the end of the file, but no more than the text has room for. Nothing on an error.
std::optional<std::size_t> ReadInto(const Descriptor& descriptor, std::string& bytes) {
  std::size_t done = 0;
  while (done < bytes.size()) {
    const ssize_t got = Uninterrupted(
        [&] { return read(descriptor.Number(), bytes.data() + done, bytes.size() - done); });
    if (got < 0) return std::nullopt;
    if (got == 0) break;
    done += static_cast<std::size_t>(got);
  }
  return done;
}

// Nothing if the file changed while it was read.
std::optional<SharedFileContent> ReadOnce(const std::filesystem::path& file, std::size_t limit) {
  const auto failed = [](std::string why) { return SharedFileContent{{}, {}, std::move(why)}; };
  const Descriptor descriptor = OpenRegularFile(file, O_RDONLY);
  if (!descriptor.IsOpen()) {
    if (errno == ENOENT) return SharedFileContent();
    return failed(errno == kNoRegularFile ? "it is no file" : LastError("it can't be opened"));
  }
  struct stat before {};
  if (fstat(descriptor.Number(), &before) != 0) return failed(LastError("it can't be read"));
  const auto size = static_cast<std::uint64_t>(before.st_size);
  if (size > limit) return failed("it is too large");

  // One byte more shows whether it has grown.
  std::string bytes(static_cast<std::size_t>(size) + 1, '\0');
  const auto got = ReadInto(descriptor, bytes);
  struct stat after {};
  if (!got || fstat(descriptor.Number(), &after) != 0) return failed(LastError("it can't be read"));
  if (*got != size || StampFrom(after) != StampFrom(before)) return std::nullopt;
  bytes.resize(*got);
  return SharedFileContent{std::move(bytes), StampFrom(before), std::nullopt};
}

bool WriteAll(const Descriptor& descriptor, std::string_view bytes) {
  while (!bytes.empty()) {
    const ssize_t put =
        Uninterrupted([&] { return write(descriptor.Number(), bytes.data(), bytes.size()); });
    if (put <= 0) return false;
    bytes.remove_prefix(static_cast<std::size_t>(put));
  }
  return true;
}

struct Kept {
  bool owner = false;
  bool group = false;
};

// Gives a new file the owner and the group of an old one. Only root may give a file away; for all
// others it stays theirs, and its group can only be one that they are in.
Kept KeepOwner(const Descriptor& descriptor, const struct stat& old) {
  if (fchown(descriptor.Number(), old.st_uid, old.st_gid) != 0) {
    (void)!fchown(descriptor.Number(), static_cast<uid_t>(-1), old.st_gid);
  }
  struct stat now {};
  if (fstat(descriptor.Number(), &now) != 0) return {};
  return {now.st_uid == old.st_uid, now.st_gid == old.st_gid};
}

// A group that isn't the old file's must not get in by that one's rights.
bool KeepModeAndOwner(const Descriptor& descriptor, const struct stat& old) {
  mode_t mode = old.st_mode & 0777U;
  if (!KeepOwner(descriptor, old).group) mode &= ~mode_t{S_IRWXG};
  return fchmod(descriptor.Number(), mode) == 0;
}

// Whoever may replace the file must be able to open its lock, whoever came first and made that.
// Where the owner of the file can't have it, all may read it, which is enough.
void OpenLockToOthers(const Descriptor& lock, const std::filesystem::path& file) {
  struct stat old {};
  if (stat(file.c_str(), &old) != 0) return;
  const Kept kept = KeepOwner(lock, old);
  const mode_t readable = kept.owner && kept.group ? 0 : 0444;
  fchmod(lock.Number(), (old.st_mode & 0666U) | readable);
}

// Reading is all that a lock needs, but some network file systems want to write.
Descriptor OpenExistingLock(const std::string& name) {
  Descriptor lock = OpenRegularFile(name, O_RDWR | O_NOFOLLOW);
  const bool forbidden = !lock.IsOpen() && (errno == EACCES || errno == EPERM || errno == EROFS);
  return forbidden ? OpenRegularFile(name, O_RDONLY | O_NOFOLLOW) : std::move(lock);
}

Descriptor OpenLock(const std::filesystem::path& file) {
  const std::string name = LockNameOf(file);
  for (int tries = 1;; ++tries) {
    Descriptor lock = OpenExistingLock(name);
    if (lock.IsOpen() || errno != ENOENT) return lock;
    lock = OpenRegularFile(name, O_RDWR | O_CREAT | O_EXCL | O_NOFOLLOW);
    if (lock.IsOpen()) OpenLockToOthers(lock, file);
    if (lock.IsOpen() || errno != EEXIST || tries == kMostTries) return lock;
  }
}

// What processes that died over it have left: whoever has the lock is alone.
void RemoveLeftBehind(const std::filesystem::path& folder, std::string_view prefix) {
  FolderReader reader(folder);
  while (const dirent* const entry = reader.Next()) {
    std::string_view name = entry->d_name;
    if (!name.starts_with(prefix)) continue;
    name.remove_prefix(prefix.size());
    const bool numbered =
        !name.empty() && name.find_first_not_of("0123456789") == std::string_view::npos;
    if (numbered) unlinkat(reader.Descriptor(), entry->d_name, 0);
  }
}

// A new name is on the disk when its folder is. File systems without that say so, and lose no more
// than the name over a crash, so it is no failure.
void SyncFolder(const std::filesystem::path& folder) {
  const Descriptor descriptor(
      Uninterrupted([&] { return open(folder.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC); }));
  if (descriptor.IsOpen()) fsync(descriptor.Number());
}

// The new file is nobody else's until it has the owner and the mode of the old one, and has these
// before it has any content.
std::optional<std::string> FillNewFile(Descriptor descriptor, const struct stat* old,
                                       std::string_view bytes) {
  if (old != nullptr && !KeepModeAndOwner(descriptor, *old)) {
    return LastError("its mode can't be kept");
  }
  const bool stored =
      WriteAll(descriptor, bytes) && fsync(descriptor.Number()) == 0 && descriptor.Close();
  return stored ? std::nullopt : std::optional(LastError("it can't be written"));
}

}  // namespace

std::optional<FileStamp> StampOf(const std::filesystem::path& file) {
  struct stat status {};
  if (stat(file.c_str(), &status) != 0) return std::nullopt;
  return StampFrom(status);
}

SharedFileContent ReadSharedFile(const std::filesystem::path& file, std::size_t limit) {
  for (int tries = 1; tries <= kMostTries; ++tries) {
    if (auto content = ReadOnce(file, limit)) return *std::move(content);
    std::this_thread::sleep_for(kPause);
  }
  return {{}, {}, "it changes while it is being read"};
}

bool MayReplace(const std::filesystem::path& file) {
  const auto may = [](const std::filesystem::path& path, int what) {
    return faccessat(AT_FDCWD, path.c_str(), what, AT_EACCESS) == 0;
  };
  if (!file.has_filename() || !may(FolderOf(file), W_OK | X_OK)) return false;
  if (!may(file, W_OK) && errno != ENOENT) return false;
  return OpenExistingLock(LockNameOf(file)).IsOpen() || errno == ENOENT;
}

std::optional<std::string> ReplaceSharedFile(const std::filesystem::path& file,
                                             std::string_view bytes,
                                             const std::optional<FileStamp>& stamp) {
  struct stat old {};
  const bool there = stat(file.c_str(), &old) == 0;
  if (!there && errno != ENOENT) return LastError("it can't be looked at");

  const std::filesystem::path folder = FolderOf(file);
  const std::string prefix = TemporaryPrefix(file);
  RemoveLeftBehind(folder, prefix);
  const std::filesystem::path temporary = folder / (prefix + std::to_string(getpid()));
  Descriptor descriptor = OpenRegularFile(temporary, O_WRONLY | O_CREAT | O_EXCL | O_NOFOLLOW,
                                          there ? 0600 : kNewFileRights);
  if (!descriptor.IsOpen()) return LastError("no file can be made beside it");

  auto failure = FillNewFile(std::move(descriptor), there ? &old : nullptr, bytes);
  if (!failure && StampOf(file) != stamp) failure = "somebody else has just changed it";
  if (!failure && rename(temporary.c_str(), file.c_str()) != 0) {
    failure = LastError("it can't be replaced");
  }
  if (failure) {
    unlink(temporary.c_str());
    return failure;
  }
  SyncFolder(folder);
  return std::nullopt;
}

SharedFileLock::SharedFileLock(const std::filesystem::path& file,
                               std::chrono::milliseconds longestWait)
    : descriptor(OpenLock(file)) {
  const std::string name = LockNameOf(file);
  if (!descriptor.IsOpen()) {
    error = errno == kNoRegularFile ? "its lock " + name + " is no file"
                                    : LastError("its lock " + name + " can't be opened");
    return;
  }
  const auto end = std::chrono::steady_clock::now() + longestWait;
  while (Uninterrupted([&] { return flock(descriptor.Number(), LOCK_EX | LOCK_NB); }) != 0) {
    if (errno != EWOULDBLOCK) {
      error = LastError("its lock " + name + " can't be had");
    } else if (std::chrono::steady_clock::now() >= end) {
      error = "another process doesn't let go of its lock " + name;
    }
    if (error) {
      descriptor.Close();
      return;
    }
    std::this_thread::sleep_for(kPause);
  }
}

}  // namespace pw
