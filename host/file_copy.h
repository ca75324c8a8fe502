#pragma once

#include <filesystem>
#include <optional>

#include "host/outcome.h"

namespace pw {

enum class CopyUse {
  kPassing,  // for this run: this user alone can read and write it
  kKept,     // it keeps the original's rights, and the owner where that is permitted
};

// Copies a regular file, with its times, to a name that is free. The original isn't changed by it;
// where the system lets us, not even its access time is. False where there is no regular file: it
// has gone meanwhile, or is a link that leads nowhere or in a circle. A failure names the file that
// is to blame.
Outcome<bool> CopyFile(const std::filesystem::path& file, const std::filesystem::path& target,
                       CopyUse use);

// Puts a copy that is kept in another file's place, in one step. A target that is a link stays one,
// and the file that it leads to is replaced. What stands in the way, which names the target or the
// original, or nothing.
std::optional<Failure> ReplaceByCopy(const std::filesystem::path& file,
                                     const std::filesystem::path& target);

}  // namespace pw
