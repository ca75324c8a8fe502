#include "host/calendar_guard.h"

#include <string>
#include <string_view>

#include "framework/config.h"
#include "platform/platform.h"

namespace pw {

bool LacksEventFile(const CalendarStem& stem) {
  const auto has = [&](std::string_view fixed) { return stem.files.count(std::string(fixed)) > 0; };
  return !has(kEventFile) && (has(kDataFile) || has(kRecurringFile));
}

std::optional<Failure> CalendarInTheWay(EngineRun& run, bool force) {
  Files& files = *CurrentPlatform().files;
  const std::string folder = run.Objects().config.String(PWConfig::kDataFolder).Str() + "\\";
  for (const CalendarStem& stem : CalendarStems(run.NativePathOf(folder))) {
    const std::string prefix = folder + stem.text;
    for (const auto& [fixed, name] : stem.files) {
      const std::string path = prefix + fixed;
      if (files.Open(path, OpenMode::kReadWriteExisting, Sharing::kReadWrite) != nullptr) continue;
      return Failure{run.NativePathOf(path) +
                     ": can't be opened for reading and writing; nothing was done"};
    }
    if (LacksEventFile(stem) && !force) {
      return Failure{run.NativePathOf(prefix + std::string(kEventFile)) +
                     ": not there, so that a save would overwrite the calendar's other files; "
                     "--force goes on all the same"};
    }
  }
  return std::nullopt;
}

}  // namespace pw
