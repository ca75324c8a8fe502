#pragma once

#include <optional>
#include <string>

#include "platform/files.h"

namespace pw {

// The whole file, or nothing if it can't be opened for reading or read to its size.
inline std::optional<std::string> ReadWholeFile(Files& files, const std::string& path) {
  const auto file = files.Open(path, OpenMode::kRead, Sharing::kReadWrite);
  const auto size = file == nullptr ? std::nullopt : file->Size();
  if (!size) return std::nullopt;
  std::string bytes = file->Read(static_cast<std::size_t>(*size));
  if (bytes.size() != *size) return std::nullopt;
  return bytes;
}

}  // namespace pw
