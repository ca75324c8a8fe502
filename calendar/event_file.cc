#include "calendar/event_file.h"

#include <algorithm>
#include <cstdint>
#include <memory>
#include <utility>
#include <vector>

#include "calendar/day_grid.h"
#include "timeplace/date.h"

namespace events = pw::events;
namespace frame = pw::frame;

namespace {

// The blocks of a used year; nothing where its table isn't there.
std::optional<std::vector<frame::DayEntry>> TakeTable(std::string_view file,
                                                      const frame::YearEntry& year) {
  pw::ByteReader in(file);
  in.Seek(year.offset);
  if (year.offset == 0 || in.Remaining() < frame::kYearTableSize) return std::nullopt;
  std::vector<frame::DayEntry> days(frame::kDayEntries);
  for (frame::DayEntry& day : days) day = frame::DecodeDayEntry(in);
  return days;
}

class EventReader {
 public:
  EventReader(std::string_view file, ItemList& plainItems, ItemList& occurrenceItems)
      : file(file), budget(file.size()), plainItems(plainItems), occurrenceItems(occurrenceItems) {}

  // Whether the years behind this one are to be read.
  bool ReadYear(const std::vector<frame::DayEntry>& days) {
    bool isGood = true;
    for (const frame::DayEntry& day : days) {
      if (day.size != 0) isGood = ReadDay(day);
    }
    return isGood;
  }

 private:
  bool ReadDay(const frame::DayEntry& day) {
    const auto blob = frame::BlockOf(file, day);
    if (!blob || budget.IsSpent()) return false;
    items.clear();
    pw::ByteReader in(*blob);
    const auto damage = events::DecodeDay(in, [&](pw::ByteReader& rest) {
      items.push_back(std::make_unique<WMEventItem>());
      return items.back()->Parse(rest);
    });
    budget.Spend(in.Position());
    if (damage || !taken.Take(day.offset, in.Position())) return false;
    for (auto& item : items) {
      const bool isPlain = !item->IsOccurrence() && !item->IsChanged();
      (isPlain ? plainItems : occurrenceItems).Append(std::move(item));
    }
    return true;
  }

  std::string_view file;
  frame::ReadingBudget budget;
  frame::TakenBlocks taken;
  ItemList& plainItems;
  ItemList& occurrenceItems;
  std::vector<std::unique_ptr<WMEventItem>> items;  // of the day that is being read
};

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
  pw::ByteReader in(file);
  in.Seek(frame::kHeaderSize);
  if (in.Remaining() < frame::kYearIndexSize) return false;
  std::vector<std::vector<frame::DayEntry>> years;
  for (std::size_t i = 0; i < frame::kYearEntries; ++i) {
    const frame::YearEntry year = frame::DecodeYearEntry(in);
    if (year.year <= 0) continue;
    auto table = TakeTable(file, year);
    if (!table) return false;
    years.push_back(std::move(*table));
  }
  EventReader reader(file, plainItems, occurrenceItems);
  std::all_of(years.begin(), years.end(),
              [&](const std::vector<frame::DayEntry>& days) { return reader.ReadYear(days); });
  return true;
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
