#include "host/calendar_guard.h"

#include <algorithm>
#include <filesystem>
#include <string>
#include <string_view>
#include <system_error>

#include "framework/category.h"
#include "framework/config.h"
#include "host/catalogue.h"
#include "host/record_reader.h"
#include "platform/platform.h"

namespace pw {
namespace {

// The data folder, and that of the default user's calendar where it is another; each with a
// separator at its end, where it isn't the empty one.
std::vector<std::string> FoldersOfCalendars(EngineRun& run) {
  std::vector<std::string> folders = {run.Objects().config.String(PWConfig::kDataFolder).Str() +
                                      "\\"};
  auto calendars = ListCategories(run.Manager(), kCalendarType);
  if (!calendars) return folders;
  for (PWObject* each = calendars->First(); each != nullptr; each = calendars->Next()) {
    const std::string location = static_cast<PWSourceCategory*>(each)->Location.Str();
    const std::string folder = location.substr(0, location.find_last_of("\\/:") + 1);
    std::error_code error;
    const bool isOther =
        !std::filesystem::equivalent(run.NativePathOf(folders[0]), run.NativePathOf(folder), error);
    if (isOther && !error) folders.push_back(folder);
  }
  return folders;
}

std::optional<Failure> ClosedFileIn(EngineRun& run, const std::string& folder) {
  Files& files = *CurrentPlatform().files;
  for (const CalendarStem& stem : CalendarStems(run.NativePathOf(folder))) {
    const std::string prefix = folder + stem.text;
    for (const auto& [fixed, name] : stem.files) {
      const std::string path = prefix + fixed;
      if (const auto why = run.WhyClosed(path)) return Failure{why->message + "; nothing was done"};
      if (files.Open(path, OpenMode::kReadWriteExisting, Sharing::kReadWrite) != nullptr) continue;
      return Failure{run.NativePathOf(path) +
                     ": can't be opened for reading and writing; nothing was done"};
    }
  }
  return std::nullopt;
}

}  // namespace

bool LacksEventFile(const CalendarStem& stem) {
  const auto has = [&](std::string_view fixed) { return stem.files.count(std::string(fixed)) > 0; };
  return !has(kEventFile) && (has(kDataFile) || has(kRecurringFile));
}

std::optional<Failure> ClosedCalendarFile(EngineRun& run) {
  for (const std::string& folder : FoldersOfCalendars(run)) {
    if (auto closed = ClosedFileIn(run, folder)) return closed;
  }
  return std::nullopt;
}

std::optional<Failure> CalendarInTheWay(EngineRun& run, bool force) {
  if (force) return std::nullopt;
  if (auto closed = ClosedCalendarFile(run)) return closed;
  for (const std::string& folder : FoldersOfCalendars(run)) {
    for (const CalendarStem& stem : CalendarStems(run.NativePathOf(folder))) {
      if (!LacksEventFile(stem)) continue;
      return Failure{run.NativePathOf(folder + stem.text + std::string(kEventFile)) +
                     ": not there, so that a save would overwrite the calendar's other files; "
                     "`pairwise restore` brings a backup back, `pairwise check` tells of the "
                     "others, and only `pairwise drive --force` goes on all the same"};
    }
  }
  return std::nullopt;
}

bool AnyNeedsCalendars(const std::vector<std::string>& types) {
  return std::any_of(types.begin(), types.end(), [](const std::string& type) {
    return type == kCalendarType || type == kTodoType;
  });
}

}  // namespace pw
