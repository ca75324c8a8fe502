#pragma once

#include <filesystem>
#include <string>
#include <vector>

namespace pw {

// What stands before the fixed part in the names of the calendar and to-do files of a folder: each
// person's own, empty where there is none. In the organiser's code page, without repetition in any
// letter case, sorted. None for a folder that can't be read.
std::vector<std::string> CalendarStems(const std::filesystem::path& folder);

}  // namespace pw
