#pragma once

#include <filesystem>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "host/outcome.h"

// The host's own files: profiles, registries, exports. Paths are the machine's.
namespace pw {

// The file's bytes; where the system lets us, not even its access time changes. A file of more than
// `limit` bytes, or one that isn't a regular file, fails.
Outcome<std::string> ReadNativeFile(const std::filesystem::path& file, std::uintmax_t limit);

// Whether both can be read, and hold the same.
bool HaveSameBytes(const std::filesystem::path& one, const std::filesystem::path& other);

// Puts the bytes into a file beside the target, which then takes the target's place in one step:
// there is never half a file under that name. A target that is a symbolic link stays one, and the
// file that it leads to is replaced or made. A device or a pipe is written into.
Outcome<Done> WriteNativeFile(const std::filesystem::path& file, std::string_view bytes);

// The same, and the file has reached the disk, under its name, when the call returns.
Outcome<Done> WriteSyncedFile(const std::filesystem::path& file, std::string_view bytes);

// Whether all bytes were written to a descriptor; errno tells why not.
bool WriteAll(int descriptor, std::string_view bytes);

// Waits until files of a folder, and the names in it, have reached the disk. What stands in the
// way, or nothing; some file systems can't do it with a folder, and that counts as done.
std::optional<Failure> SyncFiles(const std::filesystem::path& folder,
                                 const std::vector<std::string>& names);

// Why no file of that name can be made in its folder, such as a name that is too long, as far as
// the system says so beforehand. Nothing otherwise, nor where it is there.
std::optional<Failure> WhyNotMakeable(const std::filesystem::path& file);

// What the links of that name lead to, whether it is there or not.
std::filesystem::path BehindLinks(std::filesystem::path file);

// The pattern of `mkstemp` for a file beside the target, short enough beside a name of any length.
// What a run that is cut off leaves of them can be told by the name.
std::string TemporaryBeside(const std::filesystem::path& target);
bool IsTemporaryName(std::string_view name);

// What the last system call complained of: "FILE: No such file or directory".
Failure SystemFailure(const std::filesystem::path& file, int error);

}  // namespace pw
