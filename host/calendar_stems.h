#pragma once

#include <filesystem>
#include <map>
#include <string>
#include <string_view>
#include <vector>

namespace pw {

// What the names of these files end with.
inline constexpr std::string_view kEventFile = "EVEN.WMW";
inline constexpr std::string_view kRecurringFile = "RECR.WMW";
inline constexpr std::string_view kDataFile = "DATA.WMW";
inline constexpr std::string_view kTaskFile = "TASK.WMW";
inline constexpr std::string_view kCallFile = "CALL.WMW";

// One person's calendar and to-do files.
struct CalendarStem {
  std::string text;  // what stands before the fixed part of their names, in code page 1252

  // Those that are there: the fixed part, and the whole name as the folder has it.
  std::map<std::string, std::string> files;

  bool isVersion50 = false;         // whether one of them is of version 50
  bool areEventsVersion50 = false;  // whether the event file is
};

// Those of a folder, sorted by their texts, which differ by more than letter case. None for a
// folder that can't be read.
std::vector<CalendarStem> CalendarStems(const std::filesystem::path& folder);

}  // namespace pw
