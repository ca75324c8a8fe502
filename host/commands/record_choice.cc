#include "host/commands/record_choice.h"

#include <set>
#include <string>
#include <utility>
#include <vector>

#include "host/binder_files.h"
#include "host/catalogue.h"

namespace pw {
namespace {

std::string UnreadableText(const EngineRun& run, const std::string& type,
                           const PWSourceCategory& category, std::size_t count) {
  const std::string number = std::to_string(count);
  // What repeats is all that the module can't pass on; its log names each.
  if (type == kTodoType) {
    return number +
           (count == 1 ? " recurring record is left out" : " recurring records are left out");
  }
  if (type == kCalendarType) {
    return number + (count == 1 ? " event is left out, as the engine has no words for it"
                                : " events are left out, as the engine has no words for them");
  }
  return run.NativePathOf(category.Location.Str()) + ": " + number +
         (count == 1 ? " record" : " records") + " could not be read";
}

std::vector<std::string> UnopenedBinders(EngineRun& run, const PWSourceCategoryVector& all) {
  const std::string folder = run.Manager().Config->String(PWConfig::kDataFolder).Str();
  std::vector<std::string> problems;
  for (const std::string& path : UnlistedBinders(folder, all)) {
    problems.push_back(run.NativePathOf(path) +
                       ": this binder can't be opened, and is left out; see `pairwise check`");
  }
  return problems;
}

}  // namespace

Outcome<ChosenRecords> ChooseRecords(EngineRun& run, const Console& console,
                                     const std::string& type,
                                     const std::optional<std::string>& category) {
  const auto categories = ChooseCategories(run.Manager(), type, category);
  if (!categories) return categories.Why();
  ChosenRecords chosen;
  if (type == kMemoType && !category) {
    chosen.anyLeftOut = console.Warn(UnopenedBinders(run, *categories));
  }
  std::set<std::string> told;
  for (std::uint32_t i = 0; i < categories->Count(); ++i) {
    const PWSourceCategory& each = *categories->At(i);
    auto read = ReadRecords(run, type, each);
    if (!read && categories->Count() == 1) return read.Why();
    if (!read) {
      console.Fail(read.Why());
      chosen.anyLeftOut = true;
      continue;
    }
    if (read->unreadable > 0) {
      read->problems.push_back(UnreadableText(run, type, each, read->unreadable));
    }
    console.Warn(read->warnings);
    // Several sections may be of one file.
    std::erase_if(read->problems,
                  [&](const std::string& problem) { return !told.insert(problem).second; });
    if (console.Warn(read->problems)) chosen.anyLeftOut = true;
    chosen.categories.push_back(std::move(*read));
  }
  return chosen;
}

}  // namespace pw
