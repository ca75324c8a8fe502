#include "timeplace/date.h"

#include <algorithm>
#include <array>
#include <cstddef>

namespace {

constexpr std::int32_t kEpochYear = 1970;
constexpr std::int32_t kMonths = 12;
constexpr std::int32_t kDaysPerCommonYear = kSecondsPerCommonYear / kSecondsPerDay;
constexpr std::int32_t kDaysPerFourYears = kSecondsPerFourYears / kSecondsPerDay;

// Leap days of the years 1 to 1969.
constexpr std::int64_t kLeapDaysToEpoch = 492 - 19 + 4;

// Days before each month of a common and of a leap year, and behind the last.
using MonthStarts = std::array<std::int16_t, kMonths + 1>;
constexpr std::array<MonthStarts, 2> kMonthStarts = {{
    {0, 31, 59, 90, 120, 151, 181, 212, 243, 273, 304, 334, 365},
    {0, 31, 60, 91, 121, 152, 182, 213, 244, 274, 305, 335, 366},
}};

// The month, from 0, of each day of a common and of a leap year.
constexpr std::size_t kLongestYear = 366;
using MonthsOfDays = std::array<std::uint8_t, kLongestYear>;
constexpr MonthsOfDays MonthsOfEachDay(const MonthStarts& starts) {
  MonthsOfDays months{};
  for (std::size_t month = 0; month < kMonths; ++month) {
    for (auto day = starts[month]; day < starts[month + 1]; ++day) {
      months[static_cast<std::size_t>(day)] = static_cast<std::uint8_t>(month);
    }
  }
  return months;
}
constexpr std::array<MonthsOfDays, 2> kMonthsOfDays = {MonthsOfEachDay(kMonthStarts[0]),
                                                       MonthsOfEachDay(kMonthStarts[1])};

const MonthStarts& StartsOf(std::int64_t year) {
  return kMonthStarts[IsLeapYear(year) ? 1 : 0];
}

std::int32_t Wrapped(std::int64_t seconds) {
  return static_cast<std::int32_t>(static_cast<std::uint32_t>(seconds));
}

std::int64_t SecondsOfDay(std::int64_t hour, std::int64_t minute, std::int64_t second) {
  return hour * kSecondsPerHour + minute * kSecondsPerMinute + second;
}

// Brings a month from 0 into its year, and gives the years to carry. Most are there already.
std::int64_t CarryMonths(std::int32_t& month) {
  if (month >= 0 && month < kMonths) return 0;
  const std::int64_t given = month;
  month %= kMonths;
  if (month < 0) month += kMonths;
  return (given - month) / kMonths;
}

// Seconds of the first moment of a day of the year, which counts from 1.
std::int64_t SecondsOfDate(std::int64_t year, std::int32_t dayOfYear) {
  const std::int64_t days = dayOfYear - 1 + LeapDaysThrough(year) - kLeapDaysToEpoch;
  return days * kSecondsPerDay + (year - kEpochYear) * kSecondsPerCommonYear;
}

// Days from the epoch to the first of a month, which is from 0 to 11. The year's own leap day
// counts from March on.
std::int64_t DaysToMonth(std::int64_t year, std::int32_t month) {
  constexpr std::int32_t kMarch = 2;
  const std::int32_t ownLeapDay = month >= kMarch && IsLeapYear(year) ? 1 : 0;
  return (year - kEpochYear) * kDaysPerCommonYear + LeapDaysThrough(year) - kLeapDaysToEpoch +
         kMonthStarts[0][static_cast<std::size_t>(month)] + ownLeapDay;
}

// A year, and the day of it from 0.
struct YearAndDay {
  std::int32_t year;
  std::int32_t day;
};

// The year of a day from the epoch on. In quarters of a day all years are equally long; half a day
// ahead gives the third year of four the extra day. (No century year but 2000, which has it, lies
// within 32 bits of seconds.)
YearAndDay SplitYear(std::int32_t daysSinceEpoch) {
  const std::int32_t quarters = 4 * daysSinceEpoch + 2;
  return {kEpochYear + quarters / kDaysPerFourYears, quarters % kDaysPerFourYears / 4};
}

// The same before the epoch: spans of four years are taken off, and the day stays negative.
YearAndDay SplitYearBeforeEpoch(std::int32_t daysSinceEpoch) {
  return {kEpochYear + 4 * (daysSinceEpoch / kDaysPerFourYears),
          daysSinceEpoch % kDaysPerFourYears};
}

std::int32_t WeekdaySinceEpoch(std::int32_t days) {
  constexpr std::int32_t kThursday = 4;
  constexpr std::int32_t kWholeWeeks = 7 * 4000;  // more than 32 bits of seconds go back
  return (days + kThursday + kWholeWeeks) % 7;
}

// Not made a part of its caller, where all would then be divided as what may be negative, slowly.
[[gnu::noinline]] WMBrokenTime BrokenTimeBeforeEpoch(std::int32_t seconds) {
  const std::int32_t days = seconds / kSecondsPerDay;
  const std::int32_t ofDay = seconds % kSecondsPerDay;
  const auto [year, day] = SplitYearBeforeEpoch(days);
  WMBrokenTime broken;
  broken.sec = ofDay % kSecondsPerMinute;
  broken.min = ofDay % kSecondsPerHour / kSecondsPerMinute;
  broken.hour = ofDay / kSecondsPerHour;
  broken.mday = day + 1;
  broken.mon = 0;
  broken.year = year - 1900;
  broken.wday = WeekdaySinceEpoch(days);
  broken.yday = day;
  broken.isdst = -1;
  return broken;
}

}  // namespace

bool IsLeapYear(std::int64_t year) {
  return (year % 4 == 0 && year % 100 != 0) || year % 400 == 0;
}

std::int32_t DaysInMonth(std::int64_t year, std::int32_t month) {
  const MonthStarts& starts = StartsOf(year);
  const auto index = static_cast<std::size_t>(std::clamp(month, 1, kMonths));
  return starts[index] - starts[index - 1];
}

std::int64_t LeapDaysThrough(std::int64_t year) {
  const std::int64_t before = year - 1;
  return before / 4 - before / 100 + before / 400;
}

std::int16_t DayOfYear(std::int64_t year, std::int32_t month, std::int32_t day) {
  const auto monthsBefore = static_cast<std::size_t>(std::clamp(month - 1, 0, kMonths));
  return static_cast<std::int16_t>(static_cast<std::uint32_t>(day) +
                                   static_cast<std::uint32_t>(StartsOf(year)[monthsBefore]));
}

std::int32_t WeekdayOf(std::int64_t year, std::int32_t dayOfYear) {
  return static_cast<std::int32_t>((dayOfYear + year - 1 + LeapDaysThrough(year)) % 7);
}

std::int32_t PlainSeconds(std::int32_t year, std::int32_t month, std::int32_t day,
                          std::int32_t hour, std::int32_t minute, std::int32_t second) {
  return Wrapped(SecondsOfDate(year, DayOfYear(year, month, day)) +
                 SecondsOfDay(hour, minute, second));
}

WMTime::WMTime(std::int32_t year, std::int32_t month, std::int32_t day, std::int32_t hour,
               std::int32_t minute, std::int32_t second)
    : seconds(PlainSeconds(year, month, day, hour, minute, second)) {}

WMBrokenTime BrokenTimeOf(std::int32_t seconds) {
  if (seconds < 0) return BrokenTimeBeforeEpoch(seconds);
  const std::int32_t days = seconds / kSecondsPerDay;
  const std::int32_t ofDay = seconds % kSecondsPerDay;
  const auto [year, day] = SplitYear(days);
  const std::size_t leap = year % 4 == 0 ? 1 : 0;
  const std::size_t month = kMonthsOfDays[leap][static_cast<std::size_t>(day)];
  WMBrokenTime broken;
  broken.sec = ofDay % kSecondsPerMinute;
  broken.min = ofDay % kSecondsPerHour / kSecondsPerMinute;
  broken.hour = ofDay / kSecondsPerHour;
  broken.mday = day - kMonthStarts[leap][month] + 1;
  broken.mon = static_cast<std::int32_t>(month);
  broken.year = year - 1900;
  broken.wday = WeekdaySinceEpoch(days);
  broken.yday = day;
  broken.isdst = -1;
  return broken;
}

std::int32_t YearOf(std::int32_t seconds) {
  const std::int32_t days = seconds / kSecondsPerDay;
  return seconds < 0 ? SplitYearBeforeEpoch(days).year : SplitYear(days).year;
}

void BreakTime(WMTime& time) {
  time.broken = BrokenTimeOf(time.seconds);
}

std::int32_t NormalSeconds(WMBrokenTime& broken) {
  const std::int64_t year = std::int64_t{broken.year} + CarryMonths(broken.mon);
  broken.year = Wrapped(year);
  const std::int64_t days = DaysToMonth(year + 1900, broken.mon) + broken.mday - 1;
  return Wrapped(days * kSecondsPerDay + SecondsOfDay(broken.hour, broken.min, broken.sec));
}

WMTime Normalise(WMBrokenTime& broken) {
  WMTime time(NormalSeconds(broken));
  BreakTime(time);
  return time;
}

std::int32_t StampToSeconds(const PWDateTimeStamp& stamp) {
  return PlainSeconds(stamp.year, stamp.month, stamp.day, stamp.hour, stamp.minute, stamp.second);
}

PWDateTimeStamp StampOf(const WMBrokenTime& broken) {
  return {static_cast<std::uint16_t>(broken.year + 1900), static_cast<std::uint8_t>(broken.mon + 1),
          static_cast<std::uint8_t>(broken.mday),         static_cast<std::uint8_t>(broken.hour),
          static_cast<std::uint8_t>(broken.min),          static_cast<std::uint8_t>(broken.sec)};
}
