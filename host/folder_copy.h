#pragma once

#include <filesystem>
#include <optional>

#include "host/outcome.h"

namespace pw {

// Copies a folder's regular files, with their times, into one that is there and has none of them.
// The original isn't changed by it; where the system lets us, not even its access times are. What
// stands in the way, or nothing.
std::optional<Failure> CopyRegularFiles(const std::filesystem::path& original,
                                        const std::filesystem::path& copy);

}  // namespace pw
