#include "host/calendar_guard.h"

#include <algorithm>
#include <string>
#include <string_view>

#include "framework/config.h"
#include "host/record_reader.h"
#include "platform/platform.h"

namespace pw {
namespace {

// With a backslash at its end.
std::string DataFolderOf(EngineRun& run) {
  return run.Objects().config.String(PWConfig::kDataFolder).Str() + "\\";
}

}  // namespace

bool LacksEventFile(const CalendarStem& stem) {
  const auto has = [&](std::string_view fixed) { return stem.files.count(std::string(fixed)) > 0; };
  return !has(kEventFile) && (has(kDataFile) || has(kRecurringFile));
}

std::optional<Failure> ClosedCalendarFile(EngineRun& run) {
  Files& files = *CurrentPlatform().files;
  const std::string folder = DataFolderOf(run);
  for (const CalendarStem& stem : CalendarStems(run.NativePathOf(folder))) {
    const std::string prefix = folder + stem.text;
    for (const auto& [fixed, name] : stem.files) {
      const std::string path = prefix + fixed;
      if (files.Open(path, OpenMode::kReadWriteExisting, Sharing::kReadWrite) != nullptr) continue;
      return Failure{run.NativePathOf(path) +
                     ": can't be opened for reading and writing; nothing was done"};
    }
  }
  return std::nullopt;
}

std::optional<Failure> CalendarInTheWay(EngineRun& run, bool force) {
  if (force) return std::nullopt;
  if (auto closed = ClosedCalendarFile(run)) return closed;
  const std::string folder = DataFolderOf(run);
  for (const CalendarStem& stem : CalendarStems(run.NativePathOf(folder))) {
    if (!LacksEventFile(stem)) continue;
    return Failure{run.NativePathOf(folder + stem.text + std::string(kEventFile)) +
                   ": not there, so that a save would overwrite the calendar's other files; "
                   "`pairwise restore` brings a backup back, `pairwise check` tells of the others, "
                   "and only `pairwise drive --force` goes on all the same"};
  }
  return std::nullopt;
}

bool AnyNeedsCalendars(const std::vector<std::string>& types) {
  return std::any_of(types.begin(), types.end(), [](const std::string& type) {
    return type == kCalendarType || type == kTodoType;
  });
}

}  // namespace pw
