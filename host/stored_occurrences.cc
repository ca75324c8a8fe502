#include "host/stored_occurrences.h"

#include <algorithm>
#include <utility>

#include "calendar/event_days.h"
#include "calendar/recurring_format.h"
#include "platform/whole_file.h"

namespace pw {
namespace {

struct KeyedOccurrence {
  std::int32_t key;
  Occurrence occurrence;
};

}  // namespace

StoredOccurrences ReadStoredOccurrences(const std::string& eventFile) {
  const auto bytes = ReadWholeFile(eventFile, events::kLargestFile);
  if (!bytes) return {};
  StoredOccurrences stored;
  std::vector<KeyedOccurrence> ofDay;
  const auto take = [&](ByteReader& in) {
    WMEventHeader header;
    WMEventDetail detail;
    auto damage = events::DecodeItem(in, header, detail);
    const bool isUnchanged =
        detail.IsOccurrence() && (header.flags & events::kChangedOccurrence) == 0;
    if (isUnchanged) ofDay.push_back({header.created, {header.start, header.end}});
    return damage;
  };
  events::ReadDays(*bytes, take, [&](bool counts) {
    for (const KeyedOccurrence& each : ofDay) {
      if (counts) stored[each.key].push_back(each.occurrence);
    }
    ofDay.clear();
  });
  for (auto& [key, occurrences] : stored) std::sort(occurrences.begin(), occurrences.end());
  return stored;
}

bool HaveSeriesKeys(const std::string& recurringFile) {
  const auto bytes = ReadWholeFile(recurringFile, recurring::kLargestFile);
  if (!bytes || bytes->size() < recurring::kHeaderSize) return false;
  ByteReader in(*bytes);
  return recurring::VersionOf(recurring::DecodeHeader(in)) == recurring::FormatVersion::k50;
}

}  // namespace pw
