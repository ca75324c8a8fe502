#include "host/calendar_stems.h"

#include <fcntl.h>
#include <unistd.h>

#include <algorithm>
#include <string_view>

#include "base/codepage.h"
#include "base/text.h"
#include "calendar/event_format.h"
#include "calltask/call_format.h"
#include "calltask/task_format.h"
#include "host/traceless.h"

namespace pw {
namespace {

namespace fs = std::filesystem;

constexpr std::string_view kFixedParts[] = {kEventFile, kRecurringFile, kDataFile, kTaskFile,
                                            kCallFile};

// Of one of the files by days; the others don't tell which version their calendar is of.
bool IsVersion50(const fs::path& file, std::string_view fixedPart) {
  const Descriptor opened = OpenLeavingNoTrace(AT_FDCWD, file.c_str(), O_NONBLOCK);
  frame::Header header{};
  if (!opened.IsOpen() || ::read(opened.Number(), header.data(), header.size()) < 0) return false;
  const auto is50 = [&](const calltask::Magics& magics) {
    return calltask::VersionOf(header, magics) == calltask::FormatVersion::k50;
  };
  if (fixedPart == kEventFile) return events::VersionOf(header) == 50;
  if (fixedPart == kTaskFile) return is50(calltask::kTaskMagics);
  return fixedPart == kCallFile && is50(calltask::kCallMagics);
}

// Adds what the file says of its stem.
void AddFile(const fs::path& file, std::vector<CalendarStem>& stems) {
  const auto name = Utf8ToCodePage(file.filename().string());
  if (!name) return;
  const auto* fixed =
      std::find_if(std::begin(kFixedParts), std::end(kFixedParts),
                   [&](std::string_view part) { return EndsWithIgnoringCase(*name, part); });
  if (fixed == std::end(kFixedParts)) return;
  const std::string text = name->substr(0, name->size() - fixed->size());
  auto known = std::find_if(stems.begin(), stems.end(), [&](const CalendarStem& stem) {
    return EqualFileNames(stem.text, text);
  });
  if (known == stems.end()) known = stems.insert(known, {text, {}, false, false});
  known->files.emplace(*fixed, file.filename().string());
  if (!IsVersion50(file, *fixed)) return;
  known->isVersion50 = true;
  if (*fixed == kEventFile) known->areEventsVersion50 = true;
}

}  // namespace

std::vector<CalendarStem> CalendarStems(const fs::path& folder) {
  std::vector<CalendarStem> stems;
  auto names = NamesLeavingNoTrace(folder);
  if (!names) return stems;
  std::sort(names->begin(), names->end());
  for (const std::string& name : *names) AddFile(folder / name, stems);
  std::sort(stems.begin(), stems.end(), [](const CalendarStem& a, const CalendarStem& b) {
    return CompareIgnoringCase(a.text, b.text) < 0;
  });
  return stems;
}

}  // namespace pw
