#include "host/check/folder_check.h"

#include <algorithm>
#include <cstdint>
#include <iterator>
#include <string_view>
#include <system_error>

#include "base/text.h"
#include "host/calendar_guard.h"
#include "host/calendar_stems.h"
#include "host/check/calendar_check.h"
#include "host/check/card_check.h"
#include "host/check/clock_check.h"
#include "host/check/todo_check.h"
#include "host/native_file.h"

namespace pw {
namespace {

namespace fs = std::filesystem;

// The offsets in all formats have 32 bits.
constexpr std::uintmax_t kLargestFile = UINT32_MAX;

// Which files are what, by the ends of their names.
struct FileKind {
  std::string_view ending;
  FileCheck (*check)(std::string_view bytes);
};
constexpr FileKind kKinds[] = {
    {".WMCard", CheckCardfile},
    {kEventFile, CheckEvents},
    {kRecurringFile, CheckSeries},
    {kDataFile, CheckDataFile},
    {"Holidef.dat", CheckDataFile},
    {kTaskFile, [](std::string_view bytes) -> FileCheck { return CheckTasks(bytes); }},
    {kCallFile, [](std::string_view bytes) -> FileCheck { return CheckCalls(bytes); }},
    {"CLOCKS.DAT", CheckClocks},
    {"cityinfo.dat", CheckCities},
    {"timezone.dat", CheckZoneTable},
    {"Place List.dat", CheckPlaces},
};

const FileKind* KindOf(std::string_view name) {
  const auto* found = std::find_if(std::begin(kKinds), std::end(kKinds), [&](const FileKind& kind) {
    return EndsWithIgnoringCase(name, kind.ending);
  });
  return found == std::end(kKinds) ? nullptr : found;
}

CheckedFile CheckFile(const fs::path& file, const FileKind& kind) {
  CheckedFile checked{file.filename().string(), {}};
  const auto bytes = ReadNativeFile(file, kLargestFile);
  if (bytes) {
    checked.check = kind.check(*bytes);
  } else {
    checked.check.holds = "unreadable";
    checked.check.Add(std::nullopt, bytes.Why().message);
  }
  return checked;
}

}  // namespace

Outcome<FolderCheck> CheckFolder(const fs::path& folder) {
  std::error_code error;
  FolderCheck check;
  for (const auto& entry : fs::directory_iterator(folder, error)) {
    const FileKind* kind = KindOf(entry.path().filename().string());
    if (kind == nullptr) {
      ++check.others;
    } else {
      check.files.push_back(CheckFile(entry.path(), *kind));
    }
  }
  if (error) return SystemFailure(folder, error.value());
  check.together = MissingEventFiles(folder);
  std::sort(check.files.begin(), check.files.end(),
            [](const CheckedFile& a, const CheckedFile& b) { return a.name < b.name; });
  return check;
}

}  // namespace pw
