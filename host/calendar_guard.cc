#include "host/calendar_guard.h"

#include <string_view>

#include "framework/config.h"
#include "host/calendar_stems.h"
#include "platform/platform.h"

namespace pw {
namespace {

namespace fs = std::filesystem;

}  // namespace

std::vector<std::string> MissingEventFiles(const fs::path& folder) {
  std::vector<std::string> missing;
  for (const CalendarStem& stem : CalendarStems(folder)) {
    const auto has = [&](std::string_view fixed) {
      return stem.files.count(std::string(fixed)) > 0;
    };
    if (has(kEventFile) || (!has(kDataFile) && !has(kRecurringFile))) continue;
    const std::string there =
        stem.files.at(std::string(has(kDataFile) ? kDataFile : kRecurringFile));
    missing.push_back("there is no event file beside " + there +
                      "; the next save would overwrite it with an empty calendar");
  }
  return missing;
}

std::optional<Failure> CalendarInTheWay(EngineRun& run, bool force) {
  const std::string folder = run.Objects().config.String(PWConfig::kDataFolder).Str();
  const fs::path native = run.NativePathOf(folder);
  for (const CalendarStem& stem : CalendarStems(native)) {
    for (const auto& [fixed, name] : stem.files) {
      const std::string path = folder + "\\" + stem.text + fixed;
      if (!CurrentPlatform().files->IsReadableAndWritable(path)) {
        return Failure{run.NativePathOf(path) +
                       ": can't be opened for reading and writing; nothing was done"};
      }
    }
  }
  const std::vector<std::string> missing = MissingEventFiles(native);
  if (missing.empty() || force) return std::nullopt;
  return Failure{native.string() + ": " + missing.front() + "; --force goes on all the same"};
}

}  // namespace pw
