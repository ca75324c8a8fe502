#include "host/check/folder_check.h"

#include <algorithm>
#include <array>
#include <cstdint>
#include <iterator>
#include <map>
#include <optional>
#include <string_view>
#include <system_error>
#include <utility>

#include "base/text.h"
#include "cardfile/format.h"
#include "host/calendar_guard.h"
#include "host/calendar_stems.h"
#include "host/check/binder_check.h"
#include "host/check/calendar_check.h"
#include "host/check/card_check.h"
#include "host/check/clock_check.h"
#include "host/check/todo_check.h"
#include "host/native_file.h"
#include "host/traceless.h"
#include "memo/format.h"

namespace pw {
namespace {

namespace fs = std::filesystem;

// What the module reads at most of a file where its format doesn't say.
constexpr std::uintmax_t kLargest = 256 << 20;

// Which files are what, by their names, or the ends of their names where a person's own word stands
// before.
struct FileKind {
  std::string_view name;
  bool isEnding;
  std::uintmax_t largest;
  FileCheck (*check)(std::string_view bytes, bool besideVersion50);
};

// Of a file by itself.
template <auto kCheck>
FileCheck Alone(std::string_view bytes, bool /*besideVersion50*/) {
  return kCheck(bytes);
}

constexpr FileKind kKinds[] = {
    {cardfile::kExtension, true, cardfile::kLargestFile, Alone<CheckCardfile>},
    {kEventFile, true, kLargest, Alone<CheckEvents>},
    {kRecurringFile, true, kLargest, Alone<CheckSeries>},
    {kDataFile, true, kLargest, CheckDataFile},
    {memo::kSectionFile, true, kLargest, Alone<CheckSectionFile>},
    {memo::kHeaderFile, true, kLargest, Alone<CheckNoteHeaders>},
    {memo::kContentFile, true, memo::kLargestContents, Alone<CheckNoteContents>},
    {kTaskFile, true, kLargest, Alone<CheckTasks>},
    {kCallFile, true, kLargest, Alone<CheckCalls>},
    {"Holidef.dat", false, kLargest, Alone<CheckTemplate>},
    {"CLOCKS.DAT", false, kLargest, Alone<CheckClocks>},
    {"cityinfo.dat", false, kLargest, Alone<CheckCities>},
    {"timezone.dat", false, kLargest, Alone<CheckZoneTable>},
    {"Place List.dat", false, kLargest, Alone<CheckPlaces>},
};

const FileKind* KindOf(std::string_view name) {
  const auto* found = std::find_if(std::begin(kKinds), std::end(kKinds), [&](const FileKind& kind) {
    return kind.isEnding ? EndsWithIgnoringCase(name, kind.name)
                         : EqualIgnoringCase(name, kind.name);
  });
  return found == std::end(kKinds) ? nullptr : found;
}

CheckedFile CheckFile(const fs::path& file, const FileKind& kind, bool besideVersion50) {
  CheckedFile checked{file.filename().string(), {}};
  const auto bytes = ReadNativeFile(file, kind.largest);
  if (bytes) {
    checked.check = kind.check(*bytes, besideVersion50);
  } else {
    checked.check.holds = "can't be read";
    checked.check.Add(std::nullopt, bytes.Why().message);
  }
  return checked;
}

// Whether the file is a calendar's whose events are of version 50.
bool IsBesideVersion50(const std::string& name, const std::vector<CalendarStem>& stems) {
  return std::any_of(stems.begin(), stems.end(), [&](const CalendarStem& stem) {
    const bool isOurs = std::any_of(stem.files.begin(), stem.files.end(),
                                    [&](const auto& file) { return file.second == name; });
    return stem.areEventsVersion50 && isOurs;
  });
}

CheckedFile* FindFile(std::vector<CheckedFile>& files, const std::string& name) {
  const auto found = std::find_if(files.begin(), files.end(),
                                  [&](const CheckedFile& file) { return file.name == name; });
  return found == files.end() ? nullptr : &*found;
}

// What the module will overwrite, as it reads nothing of a calendar without an event file.
void TellOverwritten(const CalendarStem& stem, std::vector<CheckedFile>& files) {
  for (const std::string_view fixed : {kDataFile, kRecurringFile}) {
    const auto name = stem.files.find(std::string(fixed));
    if (name == stem.files.end()) continue;
    CheckedFile* file = FindFile(files, name->second);
    if (file == nullptr) continue;
    for (Finding& finding : file->check.findings) finding.lost = 0;  // it is among all of them
    file->check.Add(std::nullopt, "there is no event file beside it, so that it is overwritten",
                    file->check.records);
  }
}

// What the event file and the series beside it say of each other.
void TellStrayOccurrences(const fs::path& folder, const CalendarStem& stem,
                          std::vector<CheckedFile>& files) {
  const auto events = stem.files.find(std::string(kEventFile));
  const auto series = stem.files.find(std::string(kRecurringFile));
  if (events == stem.files.end()) return;
  const auto eventBytes = ReadNativeFile(folder / events->second, kLargest);
  Outcome<std::string> seriesBytes = std::string();
  if (series != stem.files.end()) {
    seriesBytes = ReadNativeFile(folder / series->second, kLargest);
  }
  CheckedFile* checked = FindFile(files, events->second);
  if (checked == nullptr || !eventBytes || !seriesBytes) return;
  CheckOccurrences(*eventBytes, *seriesBytes, checked->check);
}

// The ends of the names of a binder's files.
constexpr std::array<std::string_view, 3> kBinderFiles = {memo::kSectionFile, memo::kHeaderFile,
                                                          memo::kContentFile};

// Those of one binder that are there, in that order.
using Binder = std::array<CheckedFile*, kBinderFiles.size()>;

// By the beginnings of their names, without letter case.
std::map<std::string, Binder> BindersAmong(std::vector<CheckedFile>& files) {
  std::map<std::string, Binder> binders;
  for (CheckedFile& file : files) {
    for (std::size_t i = 0; i < kBinderFiles.size(); ++i) {
      if (!EndsWithIgnoringCase(file.name, kBinderFiles[i])) continue;
      const std::string stem = file.name.substr(0, file.name.size() - kBinderFiles[i].size());
      binders[AsciiLower(stem)][i] = &file;
    }
  }
  return binders;
}

// What its files say of each other, which is told of that of the headers or else of the first that
// is there.
void TellOfBinder(const fs::path& folder, const Binder& binder) {
  const auto [sections, headers, contents] = binder;
  const auto read = [&](const CheckedFile* file) -> std::optional<std::string> {
    if (file == nullptr) return std::nullopt;
    const auto bytes = ReadNativeFile(folder / file->name, memo::kLargestHeaders);
    return bytes ? std::optional(*bytes) : std::nullopt;
  };
  BinderBytes bytes;
  const auto sectionBytes = read(sections);
  const auto headerBytes = read(headers);
  bytes.sections = sectionBytes;
  bytes.headers = headerBytes;
  std::error_code error;
  if (contents != nullptr) bytes.contentSize = fs::file_size(folder / contents->name, error);
  if (error) return;
  CheckedFile* told = headers != nullptr ? headers : sections;
  if (told == nullptr) told = contents;
  if (told != nullptr) CheckBinder(bytes, told->check);
}

}  // namespace

Outcome<FolderCheck> CheckFolder(const fs::path& folder) {
  auto names = NamesLeavingNoTrace(folder);
  if (!names) return names.Why();
  std::sort(names->begin(), names->end());
  const std::vector<CalendarStem> stems = CalendarStems(folder);
  FolderCheck check;
  for (const std::string& name : *names) {
    const FileKind* kind = KindOf(name);
    if (kind == nullptr) {
      ++check.others;
    } else {
      check.files.push_back(CheckFile(folder / name, *kind, IsBesideVersion50(name, stems)));
    }
  }
  for (const CalendarStem& stem : stems) {
    if (LacksEventFile(stem)) TellOverwritten(stem, check.files);
    TellStrayOccurrences(folder, stem, check.files);
  }
  for (const auto& [stem, binder] : BindersAmong(check.files)) TellOfBinder(folder, binder);
  return check;
}

}  // namespace pw
