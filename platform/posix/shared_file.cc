#include "platform/posix/shared_file.h"

#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cstdio>
#include <system_error>

namespace pw {
namespace {

constexpr mode_t kPlainMode = 0666;  // less the process's mask

std::string LastError(const char* what) {
  return std::string(what) + ": " + std::generic_category().message(errno);
}

std::filesystem::path FolderOf(const std::filesystem::path& file) {
  return file.has_parent_path() ? file.parent_path() : std::filesystem::path(".");
}

Descriptor OpenFile(const std::filesystem::path& file, int flags, mode_t mode = 0) {
  return Descriptor(Uninterrupted([&] { return open(file.c_str(), flags | O_CLOEXEC, mode); }));
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

// The mode and the owner of the file that is replaced. Only root may give a file away; for all
// others the new file is theirs, as any that they make.
bool KeepModeAndOwner(const Descriptor& descriptor, const std::filesystem::path& file) {
  struct stat old {};
  if (stat(file.c_str(), &old) != 0) return errno == ENOENT;
  if (fchown(descriptor.Number(), old.st_uid, old.st_gid) != 0 && errno != EPERM) return false;
  return fchmod(descriptor.Number(), old.st_mode & 07777U) == 0;
}

// A new name is on the disk when its folder is. File systems without that say so, and lose no more
// than the name over a crash, so it is no failure.
void SyncFolder(const std::filesystem::path& folder) {
  const Descriptor descriptor = OpenFile(folder, O_RDONLY | O_DIRECTORY);
  if (descriptor.IsOpen()) fsync(descriptor.Number());
}

std::optional<std::string> WriteNewFile(const std::filesystem::path& temporary,
                                        const std::filesystem::path& file, std::string_view bytes) {
  unlink(temporary.c_str());  // left by a process that died over it: nobody else has the lock
  Descriptor descriptor = OpenFile(temporary, O_WRONLY | O_CREAT | O_EXCL | O_NOFOLLOW, kPlainMode);
  if (!descriptor.IsOpen()) return LastError("no file can be made beside it");
  if (!WriteAll(descriptor, bytes)) return LastError("it can't be written");
  if (!KeepModeAndOwner(descriptor, file)) return LastError("its mode can't be kept");
  const bool stored = fsync(descriptor.Number()) == 0 && descriptor.Close();
  if (!stored) return LastError("it can't be written");
  if (rename(temporary.c_str(), file.c_str()) != 0) return LastError("it can't be replaced");
  return std::nullopt;
}

}  // namespace

std::optional<FileStamp> StampOf(const std::filesystem::path& file) {
  struct stat status {};
  if (stat(file.c_str(), &status) != 0) return std::nullopt;
  return FileStamp{status.st_dev,         status.st_ino,          status.st_size,
                   status.st_mtim.tv_sec, status.st_mtim.tv_nsec, status.st_ctim.tv_sec,
                   status.st_ctim.tv_nsec};
}

SharedFileContent ReadSharedFile(const std::filesystem::path& file, std::size_t limit) {
  // Without O_NONBLOCK the opening of a pipe would wait for its other end.
  const Descriptor descriptor = OpenFile(file, O_RDONLY | O_NONBLOCK);
  if (!descriptor.IsOpen()) {
    if (errno == ENOENT) return {};
    return {{}, LastError("it can't be opened")};
  }
  struct stat status {};
  if (fstat(descriptor.Number(), &status) != 0) return {{}, LastError("it can't be read")};
  if (!S_ISREG(status.st_mode)) return {{}, "it is no file"};
  const auto size = static_cast<std::uint64_t>(status.st_size);
  if (size > limit) return {{}, "it is too large"};

  std::string bytes(static_cast<std::size_t>(size), '\0');
  std::size_t done = 0;
  while (done < bytes.size()) {
    const ssize_t got = Uninterrupted(
        [&] { return read(descriptor.Number(), bytes.data() + done, bytes.size() - done); });
    if (got < 0) return {{}, LastError("it can't be read")};
    if (got == 0) break;
    done += static_cast<std::size_t>(got);
  }
  bytes.resize(done);
  return {std::move(bytes), std::nullopt};
}

bool MayReplace(const std::filesystem::path& file) {
  const auto may = [](const std::filesystem::path& path, int what) {
    return faccessat(AT_FDCWD, path.c_str(), what, AT_EACCESS) == 0;
  };
  if (!file.has_filename() || !may(FolderOf(file), W_OK | X_OK)) return false;
  return may(file, W_OK) || errno == ENOENT;
}

std::optional<std::string> ReplaceSharedFile(const std::filesystem::path& file,
                                             std::string_view bytes) {
  const std::filesystem::path temporary = file.native() + ".new";
  if (auto failure = WriteNewFile(temporary, file, bytes)) {
    unlink(temporary.c_str());
    return failure;
  }
  SyncFolder(FolderOf(file));
  return std::nullopt;
}

SharedFileLock::SharedFileLock(const std::filesystem::path& file)
    : descriptor(OpenFile(file.native() + ".lock", O_RDWR | O_CREAT | O_NOFOLLOW | O_NONBLOCK,
                          kPlainMode)) {
  if (!descriptor.IsOpen()) return;
  if (Uninterrupted([&] { return flock(descriptor.Number(), LOCK_EX); }) != 0) descriptor.Close();
}

}  // namespace pw
