#pragma once

#include <cstdint>

// On which days a series takes place, as the organiser keeps it. Moments are seconds since 1970
// UTC; days are those of the clocks of the series' own zone.
namespace pw::calendar {

// What `patternKind` may say; a rule of any other kind has no dates.
inline constexpr std::uint16_t kMonthlyByWeekday = 1;
inline constexpr std::uint16_t kMonthlyByDate = 2;
inline constexpr std::uint16_t kWeekly = 3;
inline constexpr std::uint16_t kDaily = 4;

// The bit of the day mask for the last day of a month.
inline constexpr std::uint32_t kLastDayOfMonth = 1U << 31;

}  // namespace pw::calendar

struct WMRecurrenceRule {
  std::int32_t firstDay = 0;      // the first moment of the series
  std::int32_t lastDay = 0;       // daily and weekly, all of its local date; else the last moment
  std::uint16_t startSlot = 0;    // quarter of an hour in which it starts, from 0 to 95
  std::uint16_t patternKind = 0;  // one of the four above
  std::int16_t interval = 1;      // days, weeks or months from one to the next
  std::uint8_t weekMask = 0;      // monthly by weekday: bit 0 for the first week, up to bit 4
  std::uint32_t dayMask = 0;      // monthly by date: bit n - 1 for day n, but bit 31 for the last
  std::uint8_t weekdayMask = 0;   // weekly, and monthly by weekday: bit 0 for Sunday, up to bit 6
  std::uint16_t reserved3 = 0;    // carried

  friend bool operator==(const WMRecurrenceRule&, const WMRecurrenceRule&) = default;
};
