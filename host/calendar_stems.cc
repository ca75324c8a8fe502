#include "host/calendar_stems.h"

#include <algorithm>
#include <cstddef>
#include <fstream>
#include <string_view>
#include <system_error>

#include "base/codepage.h"
#include "base/text.h"
#include "calendar/event_format.h"
#include "calltask/call_format.h"
#include "calltask/task_format.h"

namespace pw {
namespace {

namespace fs = std::filesystem;

constexpr std::string_view kFixedParts[] = {kEventFile, kRecurringFile, kDataFile, kTaskFile,
                                            kCallFile};
constexpr std::string_view kMagicsOf50[] = {events::kMagic50, calltask::kTaskMagics.version50,
                                            calltask::kCallMagics.version50};

bool IsVersion50(const fs::path& file) {
  constexpr std::size_t kMagicSize = 9;
  char magic[kMagicSize] = {};
  std::ifstream in(file, std::ios::binary);
  in.read(magic, kMagicSize);
  return std::find(std::begin(kMagicsOf50), std::end(kMagicsOf50),
                   std::string_view(magic, kMagicSize)) != std::end(kMagicsOf50);
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
  if (known == stems.end()) known = stems.insert(known, {text, {}, false});
  known->files.emplace(*fixed, file.filename().string());
  known->isVersion50 = known->isVersion50 || IsVersion50(file);
}

}  // namespace

std::vector<CalendarStem> CalendarStems(const fs::path& folder) {
  std::vector<CalendarStem> stems;
  std::error_code error;
  std::vector<fs::path> files;
  for (const auto& entry : fs::directory_iterator(folder, error)) files.push_back(entry.path());
  std::sort(files.begin(), files.end());
  for (const fs::path& file : files) AddFile(file, stems);
  std::sort(stems.begin(), stems.end(), [](const CalendarStem& a, const CalendarStem& b) {
    return CompareIgnoringCase(a.text, b.text) < 0;
  });
  return stems;
}

}  // namespace pw
