#include "host/rule_of_pattern.h"

#include <algorithm>
#include <string_view>

#include "base/text.h"

namespace pw {
namespace {

namespace chrono = std::chrono;

using Unit = CalendarRule::Unit;

constexpr std::uint8_t kWeekdays = 7;
constexpr std::uint8_t kWeeks = 5;
constexpr std::uint8_t kMonths = 12;
constexpr std::uint8_t kLastDayBit = 31;

constexpr const char* kUnits[] = {"DAILY", "WEEKLY", "MONTHLY", "YEARLY"};
constexpr const char* kUnitWords[] = {"day", "week", "month", "year"};
constexpr const char* kWeekdayCodes[] = {"SU", "MO", "TU", "WE", "TH", "FR", "SA"};
constexpr const char* kWeekdayWords[] = {"Sun", "Mon", "Tue", "Wed", "Thu", "Fri", "Sat"};
constexpr const char* kWeekWords[] = {"1st", "2nd", "3rd", "4th"};
constexpr const char* kMonthWords[] = {"Jan", "Feb", "Mar", "Apr", "May", "Jun",
                                       "Jul", "Aug", "Sep", "Oct", "Nov", "Dec"};

// The engine's weekdays count from 1 for Sunday; 0 is Saturday.
std::uint8_t WeekdayOf(std::uint8_t day) {
  return day == 0 ? kWeekdays - 1 : static_cast<std::uint8_t>(day - 1);
}

std::uint8_t DayOf(std::uint8_t weekday) {
  return static_cast<std::uint8_t>(weekday == kWeekdays - 1 ? 0 : weekday + 1);
}

std::int32_t MonthDayOfBit(std::uint8_t bit) {
  return bit == kLastDayBit ? -1 : bit + 1;
}

std::uint8_t BitOfMonthDay(std::int32_t day) {
  return day < 0 ? kLastDayBit : static_cast<std::uint8_t>(day - 1);
}

CalendarRule Weekly(const PWWeeklyRecurrance& weekly) {
  CalendarRule rule{Unit::kWeek, weekly.Interval, {}, 0, {}, 0};
  for (std::uint8_t day = 0; day < kWeekdays; ++day) {
    if ((weekly.Days.bits >> day & 1) != 0) rule.weekdays.push_back(WeekdayOf(day));
  }
  std::sort(rule.weekdays.begin(), rule.weekdays.end());
  return rule;
}

CalendarRule MonthlyByDate(const PWMonthlyByDateRecurrance& monthly) {
  CalendarRule rule{Unit::kMonth, monthly.Interval, {}, 0, {}, 0};
  for (std::uint8_t bit = 0; bit <= kLastDayBit; ++bit) {
    if ((monthly.Days.bits >> bit & 1) != 0) rule.monthDays.push_back(MonthDayOfBit(bit));
  }
  return rule;
}

std::int32_t WeekOf(std::uint8_t week) {
  return week == kWeeks - 1 ? -1 : week + 1;
}

std::uint8_t WeekNumber(std::int32_t week) {
  return static_cast<std::uint8_t>(week < 0 ? kWeeks - 1 : week - 1);
}

// Whether it names days that there are.
bool HasDays(const CalendarRule& rule) {
  if (rule.interval < 1) return false;
  if (rule.unit == Unit::kDay) return true;
  if (rule.unit == Unit::kWeek) return !rule.weekdays.empty();
  if (rule.unit == Unit::kYear && (rule.month < 1 || rule.month > kMonths)) return false;
  if (rule.week == 0) return !rule.monthDays.empty() && rule.monthDays.front() <= kLastDayBit;
  return rule.week < kWeeks && rule.weekdays.front() < kWeekdays;
}

CalendarRule AnyRuleOf(PWRecurrancePattern& pattern) {
  if (const auto* daily = pattern.Daily()) {
    return {Unit::kDay, daily->Interval, {}, 0, {}, 0};
  }
  if (const auto* weekly = pattern.Weekly()) return Weekly(*weekly);
  if (const auto* monthly = pattern.MonthlyByDate()) return MonthlyByDate(*monthly);
  if (const auto* byDay = pattern.MonthlyByDay()) {
    return {Unit::kMonth, byDay->Interval, {WeekdayOf(byDay->Day)}, WeekOf(byDay->Week), {}, 0};
  }
  if (const auto* yearly = pattern.YearlyByDate()) {
    const auto month = static_cast<std::uint8_t>(yearly->Month + 1);
    return {Unit::kYear, 1, {}, 0, {MonthDayOfBit(yearly->Day)}, month};
  }
  if (const auto* byDay = pattern.YearlyByDay()) {
    const auto month = static_cast<std::uint8_t>(byDay->Month + 1);
    return {Unit::kYear, 1, {WeekdayOf(byDay->Day)}, WeekOf(byDay->Week), {}, month};
  }
  return {Unit::kDay, 0, {}, 0, {}, 0};
}

// "MO,WE", or "-1FR" of a month.
std::string DayCodes(const CalendarRule& rule) {
  std::string codes;
  for (const std::uint8_t weekday : rule.weekdays) {
    if (!codes.empty()) codes += ",";
    if (rule.week != 0) codes += std::to_string(rule.week);
    codes += kWeekdayCodes[weekday];
  }
  return codes;
}

std::string MonthDayNumbers(const CalendarRule& rule) {
  std::string numbers;
  for (const std::int32_t day : rule.monthDays) {
    numbers += (numbers.empty() ? "" : ",") + std::to_string(day);
  }
  return numbers;
}

std::string DaysInWords(const CalendarRule& rule) {
  std::string words;
  for (const std::uint8_t weekday : rule.weekdays) {
    words += (words.empty() ? "" : ", ") + std::string(kWeekdayWords[weekday]);
  }
  for (const std::int32_t day : rule.monthDays) {
    words += (words.empty() ? "" : ", ") + (day < 0 ? "last day" : std::to_string(day));
  }
  if (rule.week < 0) return "the last " + words;
  return rule.week > 0 ? std::string("the ") + kWeekWords[rule.week - 1] + " " + words : words;
}

std::int32_t LengthOf(chrono::year_month month) {
  const chrono::year_month_day_last last = month / chrono::last;
  return static_cast<std::int32_t>(static_cast<unsigned>(last.day()));
}

// Those of a month, ascending, without doubles.
std::vector<chrono::sys_days> DatesInMonth(const CalendarRule& rule, chrono::year_month month) {
  const chrono::sys_days begin = month / 1;
  const std::int32_t length = LengthOf(month);
  std::vector<std::int32_t> days;
  for (const std::int32_t day : rule.monthDays) days.push_back(day < 0 ? length : day);
  if (rule.week != 0) {
    const chrono::weekday wanted(rule.weekdays.front());
    const auto toFirst = static_cast<std::int32_t>((wanted - chrono::weekday(begin)).count());
    const std::int32_t weeks = rule.week > 0 ? rule.week - 1 : (length - 1 - toFirst) / kWeekdays;
    days.push_back(1 + toFirst + weeks * kWeekdays);
  }
  std::vector<chrono::sys_days> dates;
  for (const std::int32_t day : days) {
    if (day <= length) dates.push_back(begin + chrono::days(day - 1));
  }
  dates.erase(std::unique(dates.begin(), dates.end()), dates.end());
  return dates;
}

std::vector<chrono::sys_days> DatesInWeek(const CalendarRule& rule, chrono::sys_days begin) {
  std::vector<chrono::sys_days> dates;
  for (chrono::sys_days date = begin; date < begin + chrono::weeks(1); date += chrono::days(1)) {
    const auto weekday = static_cast<std::uint8_t>(chrono::weekday(date).c_encoding());
    const bool isOne = std::count(rule.weekdays.begin(), rule.weekdays.end(), weekday) > 0;
    if (isOne) dates.push_back(date);
  }
  return dates;
}

// The unit that is so many steps behind that of the series' first date: a day, a week from the
// first date's weekday on, or a month.
chrono::sys_days BeginOfUnit(const CalendarRule& rule, chrono::sys_days first, std::int32_t steps) {
  const chrono::year_month_day date(first);
  const std::int32_t units = steps * rule.interval;
  switch (rule.unit) {
    case Unit::kDay:
      return first + chrono::days(units);
    case Unit::kWeek:
      return first + chrono::weeks(units);
    case Unit::kMonth:
      return (date.year() / date.month() + chrono::months(units)) / 1;
    default:
      return (date.year() + chrono::years(units)) / chrono::month(rule.month) / 1;
  }
}

std::vector<chrono::sys_days> DatesOfUnit(const CalendarRule& rule, chrono::sys_days begin) {
  if (rule.unit == Unit::kDay) return {begin};
  if (rule.unit == Unit::kWeek) return DatesInWeek(rule, begin);
  const chrono::year_month_day date(begin);
  return DatesInMonth(rule, date.year() / date.month());
}

}  // namespace

std::optional<CalendarRule> RuleOfPattern(PWRecurrancePattern& pattern) {
  CalendarRule rule = AnyRuleOf(pattern);
  if (!HasDays(rule)) return std::nullopt;
  return rule;
}

void SetRule(PWEventRecord& event, const CalendarRule& rule) {
  const auto interval = static_cast<std::int16_t>(rule.interval);
  const bool isByDay = rule.week != 0;
  if (rule.unit == Unit::kDay) {
    event.Recurring(true, kRecurranceDaily);
    event.RecurrancePattern()->Daily()->Interval = interval;
  } else if (rule.unit == Unit::kWeek) {
    event.Recurring(true, kRecurranceWeekly);
    PWWeeklyRecurrance& weekly = *event.RecurrancePattern()->Weekly();
    weekly.Interval = interval;
    for (const std::uint8_t weekday : rule.weekdays) weekly.Days.bits |= 1U << DayOf(weekday);
  } else if (rule.unit == Unit::kMonth && isByDay) {
    event.Recurring(true, kRecurranceMonthlyByDay);
    *event.RecurrancePattern()->MonthlyByDay() = {interval, WeekNumber(rule.week),
                                                  DayOf(rule.weekdays.front())};
  } else if (rule.unit == Unit::kMonth) {
    event.Recurring(true, kRecurranceMonthlyByDate);
    PWMonthlyByDateRecurrance& monthly = *event.RecurrancePattern()->MonthlyByDate();
    monthly.Interval = interval;
    for (const std::int32_t day : rule.monthDays) monthly.Days.bits |= 1U << BitOfMonthDay(day);
  } else if (isByDay) {
    event.Recurring(true, kRecurranceYearlyByDay);
    *event.RecurrancePattern()->YearlyByDay() = {static_cast<std::uint8_t>(rule.month - 1),
                                                 WeekNumber(rule.week),
                                                 DayOf(rule.weekdays.front())};
  } else {
    event.Recurring(true, kRecurranceYearlyByDate);
    *event.RecurrancePattern()->YearlyByDate() = {static_cast<std::uint8_t>(rule.month - 1),
                                                  BitOfMonthDay(rule.monthDays.front())};
  }
}

std::string RuleValue(const CalendarRule& rule, chrono::sys_days first) {
  std::string value = std::string("FREQ=") + kUnits[static_cast<std::size_t>(rule.unit)];
  if (rule.interval > 1) value += ";INTERVAL=" + std::to_string(rule.interval);
  if (rule.unit == Unit::kWeek) {
    value += std::string(";WKST=") + kWeekdayCodes[chrono::weekday(first).c_encoding()];
  }
  if (rule.month != 0) value += ";BYMONTH=" + std::to_string(rule.month);
  if (!rule.weekdays.empty()) value += ";BYDAY=" + DayCodes(rule);
  if (!rule.monthDays.empty()) value += ";BYMONTHDAY=" + MonthDayNumbers(rule);
  return value;
}

std::string RuleInWords(const CalendarRule& rule) {
  const char* unit = kUnitWords[static_cast<std::size_t>(rule.unit)];
  std::string words =
      rule.interval == 1 ? Format("every %s", unit) : Format("every %d %ss", rule.interval, unit);
  const std::string days = DaysInWords(rule);
  if (!days.empty()) words += " on " + days;
  if (rule.month == 0) return words;
  return words + (rule.week != 0 ? " of " : " ") + kMonthWords[rule.month - 1];
}

std::vector<chrono::sys_days> DatesOfRule(const CalendarRule& rule, chrono::sys_days first,
                                          chrono::sys_days last, std::size_t most) {
  std::vector<chrono::sys_days> dates;
  for (std::int32_t steps = 0;; ++steps) {
    const chrono::sys_days begin = BeginOfUnit(rule, first, steps);
    if (begin > last) return dates;
    for (const chrono::sys_days date : DatesOfUnit(rule, begin)) {
      if (date < first || date > last) continue;
      if (dates.size() == most) return dates;
      dates.push_back(date);
    }
  }
}

}  // namespace pw
