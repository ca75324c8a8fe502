#include "calendar/rule_expansion.h"

#include <algorithm>
#include <cstddef>

#include "timeplace/date.h"
#include "timeplace/zones.h"

namespace {

constexpr std::int32_t kDaysPerWeek = 7;
constexpr std::int32_t kMostDays = 366;
constexpr std::int32_t kMostWeeks = 52;
constexpr std::int32_t kMostMonthsByDate = 366;
constexpr std::int32_t kMostMonthsByWeekday = 12;

// Moments that are further apart are on different dates, whatever the clocks did meanwhile.
constexpr std::int64_t kFarApart = std::int64_t{3} * kSecondsPerDay;

std::int32_t DaysOn(WMBrokenTime local, std::int32_t days) {
  local.mday = WrappingSum(local.mday, days);
  return LocalToSeconds(local);
}

std::int32_t MonthsOn(WMBrokenTime local, std::int32_t months) {
  local.mon += months;
  return LocalToSeconds(local);
}

bool IsSameDate(std::int32_t a, std::int32_t b) {
  const std::int64_t distance = std::int64_t{a} - b;
  if (distance > kFarApart || distance < -kFarApart) return false;
  const WMBrokenTime first = SecondsToLocal(a);
  const WMBrokenTime second = SecondsToLocal(b);
  return first.mday == second.mday && first.mon == second.mon && first.year == second.year;
}

bool IsOnOrBefore(std::int32_t moment, std::int32_t last) {
  return moment < last || IsSameDate(moment, last);
}

bool IsOnOrAfter(std::int32_t moment, std::int32_t first) {
  return moment >= first || IsSameDate(moment, first);
}

bool IsWithin(std::int32_t interval, std::int32_t most) {
  return interval >= 1 && interval <= most;
}

bool HasBit(std::uint32_t mask, std::int32_t bit) {
  return (mask >> bit & 1) != 0;
}

bool ExpandDaily(const WMRecurrenceRule& rule, std::vector<std::int32_t>& out) {
  if (rule.firstDay > rule.lastDay || !IsWithin(rule.interval, kMostDays)) return false;
  std::int32_t cur = rule.firstDay;
  while (IsOnOrBefore(cur, rule.lastDay)) {
    out.push_back(cur);
    const std::int32_t next = AddDays(cur, rule.interval);
    if (next <= cur) break;
    cur = next;
  }
  return true;
}

// Weeks are the seven days from the weekday of the series' start.
bool ExpandWeekly(const WMRecurrenceRule& rule, std::vector<std::int32_t>& out) {
  if (CompareLocalDates(rule.firstDay, rule.lastDay) > 0) return false;
  if (!IsWithin(rule.interval, kMostWeeks)) return false;
  const std::int32_t firstWeekday = SecondsToLocal(rule.firstDay).wday;
  std::int32_t cur = rule.firstDay;
  while (IsOnOrBefore(cur, rule.lastDay)) {
    const WMBrokenTime local = SecondsToLocal(cur);
    for (std::int32_t i = 0; i < kDaysPerWeek; ++i) {
      if (!HasBit(rule.weekdayMask, (firstWeekday + i) % kDaysPerWeek)) continue;
      const std::int32_t day = DaysOn(local, i);
      // A day behind the last one of 32 bits has gone back.
      if (IsOnOrAfter(day, cur) && IsOnOrBefore(day, rule.lastDay)) out.push_back(day);
    }
    const std::int32_t next = DaysOn(local, rule.interval * kDaysPerWeek);
    if (next <= cur) break;
    cur = next;
  }
  return true;
}

// A month of the series.
struct Month {
  std::int32_t first;  // its first day
  WMBrokenTime clocks;
  std::int32_t last;  // its last day
  std::int32_t from;  // the moments in it that an occurrence may have
  std::int32_t limit;
};

Month MonthFrom(std::int32_t first, const WMRecurrenceRule& rule) {
  const WMBrokenTime clocks = SecondsToLocal(first);
  const std::int32_t last = AddDays(FirstOfMonth(MonthsOn(clocks, 1)), -1);
  return {first, clocks, last, std::max(first, rule.firstDay), std::min(last, rule.lastDay)};
}

void AppendWithin(const Month& month, std::int32_t day, std::vector<std::int32_t>& out) {
  if (day >= month.from && day <= month.limit) out.push_back(day);
}

// The number of the day that may be the month's last, which is the last whatever its number is. Two
// switches of the clocks are less than half a day.
std::int32_t LastDayNumber(const Month& month) {
  constexpr std::int32_t kHalfDay = kSecondsPerDay / 2;
  const std::int64_t length = std::int64_t{month.last} - month.first;
  return static_cast<std::int32_t>((length + kHalfDay) / kSecondsPerDay) + 1;
}

void AppendByDate(const Month& month, const WMRecurrenceRule& rule,
                  std::vector<std::int32_t>& out) {
  constexpr std::int32_t kMostDaysOfMonth = 31;
  const bool wantsLast = (rule.dayMask & pw::calendar::kLastDayOfMonth) != 0;
  const std::int32_t lastNumber = wantsLast ? LastDayNumber(month) : 0;
  for (std::int32_t n = 1; n <= kMostDaysOfMonth; ++n) {
    const bool isNamed = HasBit(rule.dayMask, n - 1);
    if (!isNamed && n != lastNumber) continue;
    const std::int32_t day = DaysOn(month.clocks, n - 1);
    // A day that the month hasn't got is one of the next month's, behind the limit.
    if (isNamed || day == month.last) AppendWithin(month, day, out);
  }
}

// The day of the fifth week is the last such weekday of what the series has of the month. Where
// that is in the fourth week, and that week is wanted too, it comes only once.
void AppendByWeekday(const Month& month, const WMRecurrenceRule& rule, std::int32_t week,
                     std::int32_t weekday, std::vector<std::int32_t>& out) {
  constexpr std::int32_t kFourth = 3;
  constexpr std::int32_t kFifth = 4;
  const std::int32_t daysOn = (weekday - month.clocks.wday + kDaysPerWeek) % kDaysPerWeek;
  const WMBrokenTime first = SecondsToLocal(DaysOn(month.clocks, daysOn));
  std::int32_t day = DaysOn(first, week * kDaysPerWeek);
  if (week == kFifth && day > month.limit) {
    if (HasBit(rule.weekMask, kFourth)) return;
    day = DaysOn(first, kFourth * kDaysPerWeek);
  }
  AppendWithin(month, day, out);
}

void AppendByWeekdays(const Month& month, const WMRecurrenceRule& rule,
                      std::vector<std::int32_t>& out) {
  constexpr std::int32_t kWeeks = 5;
  for (std::int32_t week = 0; week < kWeeks; ++week) {
    if (!HasBit(rule.weekMask, week)) continue;
    for (std::int32_t weekday = 0; weekday < kDaysPerWeek; ++weekday) {
      if (!HasBit(rule.weekdayMask, weekday)) continue;
      AppendByWeekday(month, rule, week, weekday, out);
    }
  }
}

template <class AppendMonth>
bool ExpandMonths(const WMRecurrenceRule& rule, std::int32_t mostMonths,
                  std::vector<std::int32_t>& out, AppendMonth append) {
  if (rule.firstDay > rule.lastDay || !IsWithin(rule.interval, mostMonths)) return false;
  std::int32_t cur = FirstOfMonth(rule.firstDay);
  while (cur <= rule.lastDay) {
    const Month month = MonthFrom(cur, rule);
    append(month, rule, out);
    const std::int32_t next = MonthsOn(month.clocks, rule.interval);
    if (next <= cur) break;
    cur = next;
  }
  return true;
}

}  // namespace

bool ExpandRule(const WMRecurrenceRule& rule, std::vector<std::int32_t>& out) {
  switch (rule.patternKind) {
    case pw::calendar::kDaily:
      return ExpandDaily(rule, out);
    case pw::calendar::kWeekly:
      return ExpandWeekly(rule, out);
    case pw::calendar::kMonthlyByDate:
      return ExpandMonths(rule, kMostMonthsByDate, out, AppendByDate);
    case pw::calendar::kMonthlyByWeekday:
      return ExpandMonths(rule, kMostMonthsByWeekday, out, AppendByWeekdays);
    default:
      return false;
  }
}

std::int32_t FirstOfMonth(std::int32_t seconds) {
  WMBrokenTime local = SecondsToLocal(seconds);
  local.mday = 1;
  return LocalToSeconds(local);
}

std::int32_t AddDays(std::int32_t seconds, std::int32_t days) {
  return DaysOn(SecondsToLocal(seconds), days);
}

std::int32_t CompareLocalDates(std::int32_t a, std::int32_t b) {
  if (IsSameDate(a, b)) return 0;
  return a >= b ? 1 : -1;
}

namespace pw::calendar {

// Where a walk for a date may begin is found by the latest occurrence up to each place: all that
// stand before the first one that is near the date, or later, are passed anyway.
void TakeOutDates(std::vector<std::int32_t>& occurrences, const std::vector<std::int32_t>& dates) {
  if (dates.empty() || occurrences.empty()) return;
  std::vector<std::int32_t> latest(occurrences.size());
  std::int32_t latestYet = occurrences.front();
  for (std::size_t i = 0; i < occurrences.size(); ++i) {
    latestYet = std::max(latestYet, occurrences[i]);
    latest[i] = latestYet;
  }
  std::vector<bool> isOut(occurrences.size());
  for (const std::int32_t date : dates) {
    const auto near = std::lower_bound(
        latest.begin(), latest.end(), date,
        [](std::int32_t occurrence, std::int32_t day) { return occurrence + kFarApart < day; });
    auto at = static_cast<std::size_t>(near - latest.begin());
    while (at < occurrences.size() && (isOut[at] || CompareLocalDates(date, occurrences[at]) > 0)) {
      ++at;
    }
    if (at < occurrences.size() && CompareLocalDates(date, occurrences[at]) == 0) isOut[at] = true;
  }
  std::size_t kept = 0;
  for (std::size_t i = 0; i < occurrences.size(); ++i) {
    if (!isOut[i]) occurrences[kept++] = occurrences[i];
  }
  occurrences.resize(kept);
}

}  // namespace pw::calendar
