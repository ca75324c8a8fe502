#pragma once

#include <cstdint>

#include "framework/object.h"
#include "framework/values.h"

// Dates without a zone: seconds since 1970-01-01 00:00:00 in 32 bits, and what they are on the
// calendar, by the Gregorian rules of every year. The platform's own time functions are not used,
// as they know the machine's zone and not the organiser's.
//
// Nothing here fails: fields out of their range carry over into the next. Everything is computed in
// 64 bits and cut to 32 at the end. All are pure functions.

inline constexpr std::int32_t kSecondsPerMinute = 60;
inline constexpr std::int32_t kSecondsPerHour = 3600;
inline constexpr std::int32_t kSecondsPerDay = 86400;

// The years that such seconds hold whole.
inline constexpr std::int32_t kFirstYearOfSeconds = 1970;
inline constexpr std::int32_t kLastYearOfSeconds = 2037;
inline constexpr std::int32_t kSecondsPerCommonYear = 31536000;
inline constexpr std::int32_t kSecondsPerFourYears = 126230400;

// The sum of two 32-bit words, cut to 32 bits.
constexpr std::int32_t WrappingSum(std::int32_t a, std::int32_t b) {
  return static_cast<std::int32_t>(static_cast<std::uint32_t>(a) + static_cast<std::uint32_t>(b));
}

// A date and time taken apart.
struct WMBrokenTime {
  std::int32_t sec = 0;
  std::int32_t min = 0;
  std::int32_t hour = 0;
  std::int32_t mday = 0;   // from 1
  std::int32_t mon = 0;    // from 0
  std::int32_t year = 0;   // since 1900
  std::int32_t wday = 0;   // 0 for Sunday
  std::int32_t yday = 0;   // from 0
  std::int32_t isdst = 0;  // 1 in daylight time, 0 in standard time, -1 where that isn't known

  friend bool operator==(const WMBrokenTime&, const WMBrokenTime&) = default;
};

// A moment in both forms; the broken one is there after `BreakTime`.
class WMTime : public PWObject {
 public:
  WMTime() = default;
  explicit WMTime(std::int32_t seconds) : seconds(seconds) {}

  // As `PlainSeconds`.
  WMTime(std::int32_t year, std::int32_t month, std::int32_t day, std::int32_t hour,
         std::int32_t minute, std::int32_t second);

  std::int32_t seconds = 0;
  WMBrokenTime broken;
};

bool IsLeapYear(std::int64_t year);

// Length of a month from 1 to 12; outside of these that of the nearest.
std::int32_t DaysInMonth(std::int64_t year, std::int32_t month);

// The leap days of the years before `year`, from year 1 on.
std::int64_t LeapDaysThrough(std::int64_t year);

// Day of the year, from 1, cut to 16 bits with a sign. Months before January count as it, and those
// behind December begin where the year ends.
std::int16_t DayOfYear(std::int64_t year, std::int32_t month, std::int32_t day);

// Weekday of a day of the year, which counts from 1; 0 for Sunday.
std::int32_t WeekdayOf(std::int64_t year, std::int32_t dayOfYear);

// Seconds of a date with its year in full and its month from 1.
std::int32_t PlainSeconds(std::int32_t year, std::int32_t month, std::int32_t day,
                          std::int32_t hour, std::int32_t minute, std::int32_t second);

// The date of these seconds, `isdst` -1. Before 1970, which the organiser doesn't know, the fields
// are not those of the calendar.
WMBrokenTime BrokenTimeOf(std::int32_t seconds);

// The year that `BrokenTimeOf` finds, in full.
std::int32_t YearOf(std::int32_t seconds);

// Fills the broken time from the seconds.
void BreakTime(WMTime& time);

// Seconds of a broken time, of which the month may be any and so may what is smaller. `mon` is
// brought into its range, `year` with it; the other fields stay.
std::int32_t NormalSeconds(WMBrokenTime& broken);

// The moment that a broken time means, changed as by `NormalSeconds`: with `mday` 0 it is the last
// day of the month before.
WMTime Normalise(WMBrokenTime& broken);

// Seconds of a stamp's fields.
std::int32_t StampToSeconds(const PWDateTimeStamp& stamp);

// The stamp of a broken time, each field cut to its width.
PWDateTimeStamp StampOf(const WMBrokenTime& broken);
