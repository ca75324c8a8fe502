#include "host/stored_occurrences.h"

#include <algorithm>
#include <utility>

#include "calendar/event_days.h"
#include "host/location_file.h"

namespace pw {
namespace {

struct Occurrence {
  std::int32_t key;
  std::int32_t start;
};

}  // namespace

StoredOccurrences ReadStoredOccurrences(const std::string& eventFile) {
  const auto bytes = ReadLocation(eventFile, events::kLargestFile);
  if (!bytes) return {};
  StoredOccurrences stored;
  std::vector<Occurrence> ofDay;
  const auto take = [&](ByteReader& in) {
    WMEventHeader header;
    WMEventDetail detail;
    auto damage = events::DecodeItem(in, header, detail);
    const bool isUnchanged =
        detail.IsOccurrence() && (header.flags & events::kChangedOccurrence) == 0;
    if (isUnchanged) ofDay.push_back({header.created, header.start});
    return damage;
  };
  events::ReadDays(*bytes, take, [&](bool counts) {
    for (const Occurrence& each : ofDay) {
      if (counts) stored[each.key].push_back(each.start);
    }
    ofDay.clear();
  });
  for (auto& [key, starts] : stored) std::sort(starts.begin(), starts.end());
  return stored;
}

}  // namespace pw
