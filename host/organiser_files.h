#pragma once

#include <string>
#include <string_view>

// Which files are the organiser's, by their names: those that the module makes and changes. Letter
// case doesn't count.
namespace pw {

bool IsOrganiserFile(std::string_view name);

// The clocks and the places.
bool IsClockFile(std::string_view name);

// For a file that is of use only with others, which are made and saved together (of a binder, or of
// a calendar), what is common to the names of these alone; else empty.
std::string SetOfFile(std::string_view name);

}  // namespace pw
