#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <string>

#include "platform/platform.h"

// Files that behave otherwise, in place of the platform's.
namespace pw::test {

// Stands for as long as it lives.
template <class Other>
class InPlaceOfFiles {
 public:
  InPlaceOfFiles() : before(CurrentPlatform()), files(*before.files) {
    Platform services = before;
    services.files = &files;
    SetPlatform(services);
  }
  ~InPlaceOfFiles() { SetPlatform(before); }
  InPlaceOfFiles(const InPlaceOfFiles&) = delete;
  InPlaceOfFiles& operator=(const InPlaceOfFiles&) = delete;

 private:
  Platform before;
  Other files;
};

// Each file is opened as an `OtherFile`, which wraps it.
template <class OtherFile>
class OpenAs : public FilesWrapper {
 public:
  using FilesWrapper::FilesWrapper;
  std::unique_ptr<File> Open(const std::string& path, OpenMode mode, Sharing sharing) override {
    return std::make_unique<OtherFile>(FilesWrapper::Open(path, mode, sharing));
  }
};

// On a disk that gives nothing.
class UnreadableFile : public FileWrapper {
 public:
  using FileWrapper::FileWrapper;
  std::string Read(std::size_t /*count*/) override { return {}; }
};

// One that says it is of that size, or doesn't tell.
template <std::int64_t size>
class FileOfSize : public FileWrapper {
 public:
  using FileWrapper::FileWrapper;
  std::optional<std::uint64_t> Size() override {
    return size < 0 ? std::nullopt : std::optional<std::uint64_t>(size);
  }
};

}  // namespace pw::test
