#pragma once

#include <cstdint>
#include <optional>
#include <string>

namespace pw {

// All bytes of a file at a location of the organiser's, in a reading run those of its private copy.
// Nothing if it isn't there, can't be read or has more than `largest` bytes.
std::optional<std::string> ReadLocation(const std::string& location, std::uint64_t largest);

}  // namespace pw
