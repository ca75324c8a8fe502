#pragma once

#include <filesystem>
#include <string>
#include <string_view>

#include "host/outcome.h"

// The host's own files: profiles, registries, exports. Paths are the machine's.
namespace pw {

// The file's bytes; where the system lets us, not even its access time changes. A file of more than
// `limit` bytes, or one that isn't a regular file, fails.
Outcome<std::string> ReadNativeFile(const std::filesystem::path& file, std::uintmax_t limit);

// Puts the bytes into a file beside the target, which then takes the target's place in one step:
// there is never half a file under that name. A target that is a symbolic link stays one, and the
// file that it leads to is replaced or made. A device or a pipe is written into.
Outcome<Done> WriteNativeFile(const std::filesystem::path& file, std::string_view bytes);

// What the last system call complained of: "FILE: No such file or directory".
Failure SystemFailure(const std::filesystem::path& file, int error);

}  // namespace pw
