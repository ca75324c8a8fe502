#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

#include "platform/files.h"

// Files that are read or written in one go, over the platform of this process.
namespace pw {

// All bytes of a file. Nothing if it isn't there, can't be read or has more than `largest` bytes.
std::optional<std::string> ReadWholeFile(const std::string& path, std::uint64_t largest,
                                         OpenMode mode = OpenMode::kRead);

// Makes a file, or empties it, and writes the bytes. False if it can't be made or written.
bool MakeFile(const std::string& path, std::string_view bytes);

}  // namespace pw
