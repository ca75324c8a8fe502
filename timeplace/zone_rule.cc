#include "timeplace/zone_rule.h"

#include <cstdlib>

#include "timeplace/date.h"

namespace pw {
namespace {

constexpr std::int32_t kDaysPerWeek = 7;

// Week numbers from this one on mean the last such day of the month.
constexpr std::int32_t kLastWeek = 4;

std::int32_t DayByWeekday(const WMDaylightChange& change, std::int32_t year) {
  if (change.week < 0 || change.weekday < 0 || change.weekday >= kDaysPerWeek) return 1;
  const std::int32_t month = change.MonthOfYear();
  const std::int32_t weekdayOfFirst = WeekdayOf(year, DayOfYear(year, month, 1));
  const std::int32_t first = 1 + (change.weekday - weekdayOfFirst + kDaysPerWeek) % kDaysPerWeek;
  if (change.week < kLastWeek) return first + change.week * kDaysPerWeek;
  const std::int32_t fifth = first + kLastWeek * kDaysPerWeek;
  return fifth <= DaysInMonth(year, month) ? fifth : fifth - kDaysPerWeek;
}

std::int32_t MomentOf(const WMDaylightChange& change, std::int8_t mode, std::int32_t year) {
  const std::int32_t day =
      mode == kDaylightByWeekday ? DayByWeekday(change, year) : change.week + 1;
  return PlainSeconds(year, change.MonthOfYear(), day, change.HourOfDay(), 0, 0);
}

}  // namespace

std::int32_t ZoneOffsetSeconds(std::int16_t offset) {
  const std::int32_t size = std::abs(std::int32_t{offset});
  const std::int32_t seconds = (size / 100 * 60 + size % 100) * kSecondsPerMinute;
  return offset > 0 ? -seconds : seconds;
}

DaylightRule RuleOf(const WMCityRecord& city) {
  return {city.dstMode, city.dstStart, city.dstEnd};
}

DaylightBounds BoundsOfYear(const DaylightRule& rule, std::int32_t year) {
  if (rule.mode == kNoDaylight || !rule.IsKnown()) {
    const std::int32_t newYear = PlainSeconds(year, 1, 1, 0, 0, 0);
    return {newYear, newYear};
  }
  return {MomentOf(rule.start, rule.mode, year), MomentOf(rule.end, rule.mode, year)};
}

LocalTime StandardToLocal(std::int32_t standard, const DaylightBounds& bounds) {
  const std::int32_t later = WrappingSum(standard, kSecondsPerHour);
  const bool nowInside = bounds.Contains(standard);
  const bool laterInside = bounds.Contains(later);
  const bool isDaylight = nowInside & laterInside;
  return {isDaylight ? later : standard, isDaylight};
}

std::int32_t LocalToStandard(LocalTime& local, const DaylightBounds& bounds) {
  const bool hasBegun = local.seconds >= bounds.start;
  const bool isSkipped = hasBegun & (local.seconds < WrappingSum(bounds.start, kSecondsPerHour));
  local.seconds = WrappingSum(local.seconds, isSkipped ? kSecondsPerHour : 0);
  local.isDaylight = bounds.Contains(local.seconds);
  return WrappingSum(local.seconds, local.isDaylight ? -kSecondsPerHour : 0);
}

LocalTime UtcToLocal(const WMCityRecord& city, std::int32_t utc) {
  const std::int32_t standard = WrappingSum(utc, -ZoneOffsetSeconds(city.offset));
  const DaylightRule rule = RuleOf(city);
  if (rule.mode == kNoDaylight || !rule.IsKnown()) return {standard, false};
  return StandardToLocal(standard, BoundsOfYear(rule, YearOf(standard)));
}

std::int32_t LocalToUtc(const WMCityRecord& city, std::int32_t local) {
  const std::int32_t offset = ZoneOffsetSeconds(city.offset);
  const DaylightRule rule = RuleOf(city);
  if (rule.mode == kNoDaylight || !rule.IsKnown()) return WrappingSum(local, offset);
  LocalTime time{local, false};
  return WrappingSum(LocalToStandard(time, BoundsOfYear(rule, YearOf(local))), offset);
}

}  // namespace pw
