#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

// Files and folders, as the organiser's machine has them.
//
// A path is the organiser's: bytes of its code page, backslashes or slashes, a drive letter or not,
// any letter case. What stands behind it is the implementation's business. No operation throws; all
// are called on the engine's one thread.
namespace pw {

enum class OpenMode {
  kRead,               // existing files only, for reading
  kReadWriteExisting,  // existing files only, for reading and writing
  kOpenAlways,         // for reading and writing; made empty when missing
  kCreateAlways,       // for reading and writing; emptied when there, made when missing
};

// What others may open the same file for while it is open here.
enum class Sharing { kNone, kRead, kWrite, kReadWrite };

// An open file with a position, which starts at 0. Destruction closes it.
class File {
 public:
  virtual ~File() = default;

  // Up to `count` bytes from the position, which moves behind them. Fewer come at the end of the
  // file or on an error; `count` is an upper limit and may be larger than any file.
  virtual std::string Read(std::size_t count) = 0;

  // Writes all bytes at the position, which moves behind them. False if any could not be written.
  virtual bool Write(std::string_view bytes) = 0;

  // Moves to an offset from the start; beyond the end is allowed. False leaves the position alone.
  virtual bool Seek(std::uint64_t offset) = 0;

  // Cuts the file off at the position, or extends it to there with zeros.
  virtual bool Truncate() = 0;

  // Size in bytes, or nothing on an error.
  virtual std::optional<std::uint64_t> Size() = 0;

  // The last write, in nanoseconds since 1970-01-01 00:00:00 UTC, or nothing on an error. For
  // telling one state of a file from another.
  virtual std::optional<std::int64_t> LastWriteTime() = 0;
};

struct FoundFile {
  std::string name;  // as it stands in the folder, without the path
  bool isFolder = false;
};

// The order in which files are found.
bool ComesBefore(const FoundFile& a, const FoundFile& b);

class Files {
 public:
  virtual ~Files() = default;

  // Null if the path names no such file, names a folder, or may not be opened so: because of
  // rights, or because an open file's sharing forbids it. The caller owns the file.
  virtual std::unique_ptr<File> Open(const std::string& path, OpenMode mode, Sharing sharing) = 0;

  // Whether a file or a folder of this path is there.
  virtual bool Exists(const std::string& path) = 0;

  // Whether a file or a folder of this path is there and may be both read and written.
  virtual bool IsReadableAndWritable(const std::string& path) = 0;

  // Removes a file, never a folder. False if it isn't there or stays.
  virtual bool Delete(const std::string& path) = 0;

  // False if `from` can't be read, `to` is already there, or the copy could not be completed; a
  // part of a copy isn't left behind.
  virtual bool CopyWithoutOverwriting(const std::string& from, const std::string& to) = 0;

  // Files and folders that match a pattern: a folder, a backslash, and a name in which "*" stands
  // for any text and "?" for any one character, letter case ignored. "." and ".." are never found.
  // In the order of their names, case ignored; names that differ in case alone are ordered by their
  // bytes.
  virtual std::vector<FoundFile> Find(const std::string& pattern) = 0;

  // Whether a byte of a name leads a second one, with which it makes one character. None does on a
  // machine of code page 1252.
  virtual bool IsLeadByte(unsigned char /*byte*/) { return false; }

  // Path of the running module.
  virtual std::string ModulePath() = 0;
};

// Passes everything on. A test derives from it and overrides only what is to fail.
class FilesWrapper : public Files {
 public:
  explicit FilesWrapper(Files& target) : target(target) {}

  std::unique_ptr<File> Open(const std::string& path, OpenMode mode, Sharing sharing) override {
    return target.Open(path, mode, sharing);
  }
  bool Exists(const std::string& path) override { return target.Exists(path); }
  bool IsReadableAndWritable(const std::string& path) override {
    return target.IsReadableAndWritable(path);
  }
  bool Delete(const std::string& path) override { return target.Delete(path); }
  bool CopyWithoutOverwriting(const std::string& from, const std::string& to) override {
    return target.CopyWithoutOverwriting(from, to);
  }
  std::vector<FoundFile> Find(const std::string& pattern) override { return target.Find(pattern); }
  bool IsLeadByte(unsigned char byte) override { return target.IsLeadByte(byte); }
  std::string ModulePath() override { return target.ModulePath(); }

 private:
  Files& target;
};

// The same for one open file, which it owns.
class FileWrapper : public File {
 public:
  explicit FileWrapper(std::unique_ptr<File> target) : target(std::move(target)) {}

  std::string Read(std::size_t count) override { return target->Read(count); }
  bool Write(std::string_view bytes) override { return target->Write(bytes); }
  bool Seek(std::uint64_t offset) override { return target->Seek(offset); }
  bool Truncate() override { return target->Truncate(); }
  std::optional<std::uint64_t> Size() override { return target->Size(); }
  std::optional<std::int64_t> LastWriteTime() override { return target->LastWriteTime(); }

 private:
  std::unique_ptr<File> target;
};

// Whether a name matches a pattern of "*" and "?", letter case ignored. Time is at most the product
// of the two lengths.
bool MatchesPattern(std::string_view name, std::string_view pattern);

}  // namespace pw
