#include "host/formats/vtimezone.h"

#include <cstdint>
#include <cstdlib>

#include "base/text.h"
#include "host/formats/icalendar.h"
#include "host/formats/text_value.h"
#include "timeplace/date.h"
#include "timeplace/zone_rule.h"

namespace pw {
namespace {

constexpr std::int32_t kWeeks = 4;  // that are counted; the one behind them is the last
constexpr std::int32_t kDaysOfWeek = 7;
constexpr std::int32_t kHoursOfDay = 24;
constexpr std::int32_t kCommonYear = 1970;

constexpr const char* kWeekdayCodes[kDaysOfWeek] = {"SU", "MO", "TU", "WE", "TH", "FR", "SA"};

bool IsDayOfYears(const WMDaylightChange& change, std::int8_t mode) {
  if (change.month != change.MonthOfYear() - 1 || change.week < 0) return false;
  if (change.HourOfDay() < 0 || change.HourOfDay() >= kHoursOfDay) return false;
  if (mode == kDaylightByDate) return change.week < DaysInMonth(kCommonYear, change.MonthOfYear());
  return change.weekday >= 0 && change.weekday < kDaysOfWeek;
}

// "+0130" for seconds east of Greenwich, which are whole minutes.
std::string OffsetValue(std::int32_t seconds) {
  const std::int32_t size = std::abs(seconds);
  return Format("%c%02d%02d", seconds < 0 ? '-' : '+', size / kSecondsPerHour,
                size % kSecondsPerHour / kSecondsPerMinute);
}

std::string TimeValue(std::int32_t local) {
  const WMBrokenTime time = BrokenTimeOf(local);
  return Format("%04d%02d%02dT%02d%02d%02d", time.year + 1900, time.mon + 1, time.mday, time.hour,
                time.min, time.sec);
}

std::string YearlyRule(const WMDaylightChange& change, std::int8_t mode) {
  const std::string months = Format("FREQ=YEARLY;BYMONTH=%d", change.MonthOfYear());
  if (mode == kDaylightByDate) return months + Format(";BYMONTHDAY=%d", change.week + 1);
  const std::int32_t week = change.week < kWeeks ? change.week + 1 : -1;
  return months + Format(";BYDAY=%d%s", week, kWeekdayCodes[change.weekday]);
}

// A time of the year from which on the clocks have another offset from Greenwich, in seconds east.
// The time is that of the clocks before.
struct Onset {
  const char* component;
  std::int32_t time;
  std::int32_t offsetBefore;
  std::int32_t offset;
  std::string rule;  // by which it comes again; empty for never
};

void AppendOnset(std::string& out, const Onset& onset) {
  AppendProperty(out, "BEGIN", onset.component);
  AppendProperty(out, "DTSTART", TimeValue(onset.time));
  AppendProperty(out, "TZOFFSETFROM", OffsetValue(onset.offsetBefore));
  AppendProperty(out, "TZOFFSETTO", OffsetValue(onset.offset));
  if (!onset.rule.empty()) AppendProperty(out, "RRULE", onset.rule);
  AppendProperty(out, "END", onset.component);
}

}  // namespace

bool CanBeTold(const WMCityRecord& city) {
  const DaylightRule rule = RuleOf(city);
  if (rule.mode == kNoDaylight || !rule.IsKnown()) return rule.IsKnown();
  return IsDayOfYears(rule.start, rule.mode) && IsDayOfYears(rule.end, rule.mode);
}

void AppendVTimezone(std::string& out, std::string_view name, const WMCityRecord& city) {
  const DaylightRule rule = RuleOf(city);
  const std::int32_t standard = -ZoneOffsetSeconds(city.offset);
  const std::int32_t daylight = standard + kSecondsPerHour;
  AppendProperty(out, "BEGIN", "VTIMEZONE");
  AppendProperty(out, "TZID", EscapeText(name));
  if (rule.mode == kNoDaylight) {
    AppendOnset(out, {"STANDARD", 0, standard, standard, {}});
  } else {
    const DaylightBounds bounds = BoundsOfYear(rule, kFirstYearOfSeconds);
    AppendOnset(out, {"STANDARD", bounds.end, daylight, standard, YearlyRule(rule.end, rule.mode)});
    AppendOnset(out,
                {"DAYLIGHT", bounds.start, standard, daylight, YearlyRule(rule.start, rule.mode)});
  }
  AppendProperty(out, "END", "VTIMEZONE");
}

}  // namespace pw
