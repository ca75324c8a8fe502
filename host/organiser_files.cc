#include "host/organiser_files.h"

#include <algorithm>
#include <array>
#include <iterator>

#include "base/text.h"
#include "cardfile/format.h"
#include "host/calendar_stems.h"
#include "memo/format.h"

namespace pw {
namespace {

constexpr std::string_view kClockFiles[] = {"CLOCKS.DAT", "Place List.dat"};

struct FileSet {
  std::string_view mark;
  std::array<std::string_view, 3> endings;
};
constexpr FileSet kSets[] = {
    {"?binder", {memo::kSectionFile, memo::kHeaderFile, memo::kContentFile}},
    {"?calendar", {kEventFile, kRecurringFile, kDataFile}},
};

}  // namespace

bool IsOrganiserFile(std::string_view name) {
  return EndsWithIgnoringCase(name, cardfile::kExtension) ||
         EndsWithIgnoringCase(name, kTaskFile) || EndsWithIgnoringCase(name, kCallFile) ||
         IsClockFile(name) || !SetOfFile(name).empty();
}

bool IsClockFile(std::string_view name) {
  return std::any_of(std::begin(kClockFiles), std::end(kClockFiles),
                     [&](std::string_view file) { return EqualIgnoringCase(name, file); });
}

std::string SetOfFile(std::string_view name) {
  for (const FileSet& set : kSets) {
    for (const std::string_view ending : set.endings) {
      if (!EndsWithIgnoringCase(name, ending)) continue;
      return AsciiLower(name.substr(0, name.size() - ending.size())).append(set.mark);
    }
  }
  return {};
}

}  // namespace pw
