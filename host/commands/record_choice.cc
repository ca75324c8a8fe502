#include "host/commands/record_choice.h"

#include <ostream>
#include <utility>

#include "host/catalogue.h"

namespace pw {
namespace {

void TellUnreadable(const Console& console, const EngineRun& run, const PWSourceCategory& category,
                    std::size_t count) {
  console.messages << "pairwise: " << run.NativePathOf(category.Location.Str()) << ": " << count
                   << (count == 1 ? " record" : " records") << " could not be read\n";
}

}  // namespace

Outcome<ChosenRecords> ChooseRecords(EngineRun& run, const Console& console,
                                     const std::string& type,
                                     const std::optional<std::string>& category) {
  const auto categories = ChooseCategories(run.Manager(), type, category);
  if (!categories) return categories.Why();
  ChosenRecords chosen;
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
      TellUnreadable(console, run, each, read->unreadable);
      chosen.anyLeftOut = true;
    }
    chosen.categories.push_back(std::move(*read));
  }
  return chosen;
}

}  // namespace pw
