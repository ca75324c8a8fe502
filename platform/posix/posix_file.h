#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

#include "platform/files.h"
#include "platform/posix/descriptor.h"

namespace pw {

// An open regular file of this machine. The position is kept here and not by the system.
class PosixFile : public File {
 public:
  explicit PosixFile(Descriptor opened) : descriptor(std::move(opened)) {}

  std::string Read(std::size_t count) override;
  bool Write(std::string_view bytes) override;
  bool Seek(std::uint64_t offset) override;
  bool Truncate() override;
  std::optional<std::uint64_t> Size() override;
  std::optional<std::int64_t> LastWriteTime() override;

  // False if what was written didn't all reach the file; nothing else may be asked of it
  // afterwards.
  bool Close() { return descriptor.Close(); }

 private:
  Descriptor descriptor;
  std::uint64_t position = 0;  // at most the largest `off_t`
};

}  // namespace pw
