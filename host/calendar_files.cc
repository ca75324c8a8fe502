#include "host/calendar_files.h"

#include <algorithm>
#include <cstdint>
#include <iterator>
#include <string_view>

#include "calendar/data_format.h"
#include "calendar/event_days.h"
#include "calendar/recurring_format.h"
#include "host/calendar_stems.h"
#include "platform/platform.h"
#include "platform/whole_file.h"

namespace pw {
namespace {

bool AreEventsWhole(std::string_view bytes) {
  bool isWhole = true;
  const auto take = [](ByteReader& in) {
    WMEventHeader header;
    WMEventDetail detail;
    return events::DecodeItem(in, header, detail);
  };
  const bool isRead =
      events::ReadDays(bytes, take, [&](bool counts) { isWhole = isWhole && counts; });
  return isRead && isWhole;
}

bool AreSeriesWhole(std::string_view bytes) {
  if (bytes.empty()) return true;
  const recurring::Frame frame = recurring::ReadFrame(bytes);
  return frame.hasHeader && frame.hasAllRecords && frame.damages.empty() &&
         std::none_of(frame.records.begin(), frame.records.end(), [&](const auto& stored) {
           return recurring::DecodeRecord(frame.version, stored.bytes).damage.has_value();
         });
}

bool AreDaysWhole(std::string_view bytes) {
  if (bytes.empty()) return true;
  const datafile::File file = datafile::DecodeFile(bytes);
  return file.version && file.damage.empty();
}

constexpr std::uint64_t kLargest = 256 << 20;

struct FileOfCalendar {
  std::string_view name;
  bool (*isWhole)(std::string_view bytes);
};
constexpr FileOfCalendar kFiles[] = {
    {kEventFile, AreEventsWhole}, {kRecurringFile, AreSeriesWhole}, {kDataFile, AreDaysWhole}};

bool Exists(const std::string& prefix, std::string_view name) {
  return CurrentPlatform().files->Exists(prefix + std::string(name));
}

}  // namespace

bool HasCalendar(const std::string& prefix) {
  return std::any_of(std::begin(kFiles), std::end(kFiles),
                     [&](const FileOfCalendar& file) { return Exists(prefix, file.name); });
}

std::vector<std::string> ProblemsOfCalendar(EngineRun& run, const std::string& prefix) {
  if (!HasCalendar(prefix)) return {};
  if (!Exists(prefix, kEventFile)) {
    return {run.NativePathOf(prefix + std::string(kEventFile)) +
            ": not there, so that nothing of the calendar is read"};
  }
  std::vector<std::string> problems;
  for (const auto& [name, isWhole] : kFiles) {
    const std::string path = prefix + std::string(name);
    const auto bytes = ReadWholeFile(path, kLargest);
    if (bytes && isWhole(*bytes)) continue;
    problems.push_back(run.NativePathOf(path) +
                       (bytes ? ": damaged, so that not all of it is read; see `pairwise check`"
                              : ": can't be read, or is far too large"));
  }
  return problems;
}

}  // namespace pw
