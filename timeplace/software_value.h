#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>

// What the organiser keeps of itself in the registry, for those who have no source manager at hand
// to tell which edition runs. The registry is asked at each call.
namespace pw {

// A text value of a subkey of the first edition that has it: the desktop, the information manager,
// Wingmate 98, in this order. One that is longer than `limit` bytes, or no text, is passed over.
// Nothing if no edition has it.
std::optional<std::string> ReadSoftwareValue(std::string_view subkey, const std::string& valueName,
                                             std::size_t limit);

// The organiser's data folder, as its main key has it: that of `CalendarKeyPath`, or where none is
// set that of the first edition. Nothing if it isn't there or is longer than a path may be.
std::optional<std::string> OrganiserDataFolder();

// A file of that folder: a backslash parts them unless the folder ends in one or in a slash.
std::string PathInFolder(std::string_view folder, std::string_view name);

}  // namespace pw
