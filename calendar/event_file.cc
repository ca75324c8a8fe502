#include "calendar/event_file.h"

#include <algorithm>
#include <cstdint>
#include <memory>
#include <utility>
#include <vector>

#include "calendar/day_grid.h"
#include "calendar/event_days.h"
#include "timeplace/date.h"

namespace events = pw::events;
namespace frame = pw::frame;

namespace {

// An item and the day since 1970 that it stands under.
struct Placed {
  std::int32_t day;
  const WMEventItem* item;
};

void Place(const ItemList& items, std::vector<Placed>& placed) {
  for (std::size_t rank = 0; rank < items.Count(); ++rank) {
    const WMEventItem& item = items.Item(rank);
    if (item.Start() >= 0) placed.push_back({item.Start() / kSecondsPerDay, &item});
  }
}

using Position = std::vector<Placed>::const_iterator;

// The day that begins there, and where the next one does.
Position TakeDay(Position next, Position end, WMDayRecord& day) {
  const std::int32_t date = next->day;
  day.ClearSlots();
  for (; next != end && next->day == date; ++next) day.Add(*next->item);
  return next;
}

}  // namespace

bool ReadEvents(std::string_view file, ItemList& plainItems, ItemList& occurrenceItems) {
  std::vector<std::unique_ptr<WMEventItem>> items;  // of the day that is being read
  const auto take = [&](pw::ByteReader& in) {
    items.push_back(std::make_unique<WMEventItem>());
    return items.back()->Parse(in);
  };
  return events::ReadDays(file, take, [&](bool counts) {
    for (auto& item : items) {
      if (!counts) break;
      const bool isPlain = !item->IsOccurrence() && !item->IsChanged();
      (isPlain ? plainItems : occurrenceItems).Append(std::move(item));
    }
    items.clear();
  });
}

std::optional<std::string> EncodeEvents(const frame::Header& header, const ItemList& plainItems,
                                        const ItemList& occurrenceItems) {
  std::vector<Placed> placed;
  placed.reserve(plainItems.Count() + occurrenceItems.Count());
  Place(plainItems, placed);
  Place(occurrenceItems, placed);
  const auto isEarlier = [](const Placed& a, const Placed& b) { return a.day < b.day; };
  if (!std::is_sorted(placed.begin(), placed.end(), isEarlier)) {
    std::stable_sort(placed.begin(), placed.end(), isEarlier);
  }

  std::vector<frame::DayBlock> days;
  std::vector<Position> begins;
  WMDayRecord day;
  for (Position next = placed.begin(); next != placed.end();) {
    begins.push_back(next);
    next = TakeDay(next, placed.end(), day);
    days.push_back({static_cast<std::int16_t>(day.Year()),
                    static_cast<std::uint16_t>(day.DayOfYear() - 1), day.EncodedSize()});
  }
  return frame::WriteFile(header, days, [&](pw::ByteWriter& out, std::size_t index) {
    TakeDay(begins[index], placed.end(), day);
    day.Encode(out);
  });
}
