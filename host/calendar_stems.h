#pragma once

#include <filesystem>
#include <string>
#include <vector>

namespace pw {

// One person's calendar and to-do files.
struct CalendarStem {
  std::string text;          // what stands before the fixed part of their names, in code page 1252
  bool isVersion50 = false;  // whether one of them is of version 50
};

// Those of a folder, sorted by their texts, which differ by more than letter case. None for a
// folder that can't be read.
std::vector<CalendarStem> CalendarStems(const std::filesystem::path& folder);

}  // namespace pw
