#include "calendar/event_days.h"

#include <algorithm>
#include <optional>
#include <utility>
#include <vector>

#include "timeplace/year_frame.h"

namespace pw::events {
namespace {

using YearTable = std::vector<frame::DayEntry>;

// The blocks of a used year; nothing where its table isn't there.
std::optional<YearTable> TakeTable(std::string_view file, const frame::YearEntry& year) {
  ByteReader in(file);
  in.Seek(year.offset);
  if (year.offset == 0 || in.Remaining() < frame::kYearTableSize) return std::nullopt;
  YearTable days(frame::kDayEntries);
  for (frame::DayEntry& day : days) day = frame::DecodeDayEntry(in);
  return days;
}

class DayReader {
 public:
  DayReader(std::string_view file, const TakeItem& take, const EndDay& endDay)
      : file(file), budget(file.size()), take(take), endDay(endDay) {}

  // Whether the years behind this one are to be read.
  bool ReadYear(const YearTable& days) {
    bool isGood = true;
    for (const frame::DayEntry& day : days) {
      if (day.size != 0) isGood = ReadDay(day);
    }
    return isGood;
  }

 private:
  bool ReadDay(const frame::DayEntry& day) {
    const auto blob = frame::BlockOf(file, day);
    const bool counts = blob && !budget.IsSpent() && TakeDay(day.offset, *blob);
    endDay(counts);
    return counts;
  }

  bool TakeDay(std::size_t offset, std::string_view blob) {
    ByteReader in(blob);
    const bool isDamaged = DecodeDay(in, take).has_value();
    budget.Spend(in.Position());
    return !isDamaged && taken.Take(offset, in.Position());
  }

  std::string_view file;
  frame::ReadingBudget budget;
  frame::TakenBlocks taken;
  const TakeItem& take;
  const EndDay& endDay;
};

}  // namespace

bool ReadDays(std::string_view file, const TakeItem& take, const EndDay& endDay) {
  ByteReader in(file);
  in.Seek(frame::kHeaderSize);
  if (in.Remaining() < frame::kYearIndexSize) return false;
  std::vector<YearTable> years;
  for (std::size_t i = 0; i < frame::kYearEntries; ++i) {
    const frame::YearEntry year = frame::DecodeYearEntry(in);
    if (year.year <= 0) continue;
    auto table = TakeTable(file, year);
    if (!table) return false;
    years.push_back(std::move(*table));
  }
  DayReader reader(file, take, endDay);
  std::all_of(years.begin(), years.end(),
              [&](const YearTable& days) { return reader.ReadYear(days); });
  return true;
}

}  // namespace pw::events
