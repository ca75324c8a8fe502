#include "host/import/rule_dates.h"

#include <libical/ical.h>

#include <algorithm>
#include <iterator>
#include <memory>

#include "base/text.h"

namespace pw {
namespace {

namespace chrono = std::chrono;

using Unit = CalendarRule::Unit;

constexpr std::size_t kLongestRule = 2048;
constexpr int kMostInterval = 1000;
constexpr std::int32_t kMonthsOfYear = 12;

struct FreeIterator {
  void operator()(icalrecur_iterator* iterator) const { icalrecur_iterator_free(iterator); }
};

// Noon of the date. The library goes astray over bare dates, of which it gives one again and again.
icaltimetype TimeOf(chrono::sys_days date) {
  constexpr int kNoon = 12;
  const chrono::year_month_day day(date);
  icaltimetype time = icaltime_null_time();
  time.hour = kNoon;
  time.year = static_cast<int>(day.year());
  time.month = static_cast<int>(static_cast<unsigned>(day.month()));
  time.day = static_cast<int>(static_cast<unsigned>(day.day()));
  return time;
}

chrono::sys_days DateOf(const icaltimetype& time) {
  return chrono::year(time.year) / chrono::month(static_cast<unsigned>(time.month)) /
         chrono::day(static_cast<unsigned>(time.day));
}

// The numbers of one part of a rule, up to the mark behind the last.
std::vector<short> Numbers(const short* begin, std::size_t most) {
  const short* end = std::find(begin, begin + most, ICAL_RECURRENCE_ARRAY_MAX);
  return {begin, end};
}

// A rule in the organiser's terms that may give the same dates; what it can't say is left out, as
// the dates are compared.
std::optional<CalendarRule> Candidate(const icalrecurrencetype& recur, chrono::sys_days first) {
  const chrono::year_month_day start(first);
  const auto weekday = static_cast<std::uint8_t>(chrono::weekday(first).c_encoding());
  const auto monthDay = static_cast<std::int32_t>(static_cast<unsigned>(start.day()));
  const std::vector<short> days = Numbers(recur.by_day, ICAL_BY_DAY_SIZE);
  const std::vector<short> monthDays = Numbers(recur.by_month_day, ICAL_BY_MONTHDAY_SIZE);
  const std::vector<short> months = Numbers(recur.by_month, ICAL_BY_MONTH_SIZE);
  const std::vector<short> places = Numbers(recur.by_set_pos, ICAL_BY_SETPOS_SIZE);

  CalendarRule rule;
  rule.interval = recur.interval;
  if (recur.freq == ICAL_DAILY_RECURRENCE && days.empty()) return rule;
  if (recur.freq == ICAL_DAILY_RECURRENCE || recur.freq == ICAL_WEEKLY_RECURRENCE) {
    rule.unit = Unit::kWeek;
    for (const short day : days) {
      rule.weekdays.push_back(
          static_cast<std::uint8_t>(icalrecurrencetype_day_day_of_week(day) - ICAL_SUNDAY_WEEKDAY));
    }
    if (days.empty()) rule.weekdays = {weekday};
    std::sort(rule.weekdays.begin(), rule.weekdays.end());
    return rule;
  }
  const bool isEachYear = recur.freq == ICAL_MONTHLY_RECURRENCE && recur.interval == kMonthsOfYear;
  if (isEachYear) rule.interval = 1;
  rule.unit = isEachYear || recur.freq == ICAL_YEARLY_RECURRENCE ? Unit::kYear : Unit::kMonth;
  if (rule.unit == Unit::kYear) {
    if (rule.interval != 1) return std::nullopt;
    rule.month = static_cast<std::uint8_t>(months.empty() ? static_cast<unsigned>(start.month())
                                                          : static_cast<unsigned>(months.front()));
  }
  if (!days.empty()) {
    const int place = icalrecurrencetype_day_position(days.front());
    rule.week = place != 0 || places.empty() ? place : places.front();
    rule.weekdays = {static_cast<std::uint8_t>(icalrecurrencetype_day_day_of_week(days.front()) -
                                               ICAL_SUNDAY_WEEKDAY)};
    if (rule.week == 0 || rule.week < -1 || rule.week > 4) return std::nullopt;
    return rule;
  }
  for (const short day : monthDays) rule.monthDays.push_back(day);
  if (monthDays.empty()) rule.monthDays = {monthDay};
  // The last day stands behind the others.
  std::sort(rule.monthDays.begin(), rule.monthDays.end(),
            [](std::int32_t a, std::int32_t b) { return (a < 0 ? 32 : a) < (b < 0 ? 32 : b); });
  if (rule.monthDays.size() > 1 && rule.unit == Unit::kYear) return std::nullopt;
  if (rule.monthDays.front() < -1 || rule.monthDays.back() < -1) return std::nullopt;
  return rule;
}

// Whether the organiser gives dates at such an interval, and keeps it: it reads one of years in
// months as that of each year.
bool IsKept(const CalendarRule& rule) {
  if (rule.unit == Unit::kDay) return rule.interval <= 366;
  if (rule.unit == Unit::kWeek) return rule.interval <= 52;
  if (rule.unit == Unit::kYear) return rule.interval == 1;
  return rule.interval % kMonthsOfYear != 0 && (rule.week == 0 || rule.interval < kMonthsOfYear);
}

bool IsOfDays(icalrecurrencetype_frequency frequency) {
  return frequency == ICAL_DAILY_RECURRENCE || frequency == ICAL_WEEKLY_RECURRENCE ||
         frequency == ICAL_MONTHLY_RECURRENCE || frequency == ICAL_YEARLY_RECURRENCE;
}

// Takes away what the rule says of the time of its dates, where that is the time of the first one,
// "19980304T100000". Whether it is.
bool TakeOwnTime(icalrecurrencetype& recur, std::string_view start) {
  constexpr std::size_t kHourAt = 9;
  const struct {
    short* numbers;
    std::size_t most;
  } parts[] = {{recur.by_hour, ICAL_BY_HOUR_SIZE},
               {recur.by_minute, ICAL_BY_MINUTE_SIZE},
               {recur.by_second, ICAL_BY_SECOND_SIZE}};
  for (std::size_t i = 0; i < std::size(parts); ++i) {
    const std::vector<short> numbers = Numbers(parts[i].numbers, parts[i].most);
    if (numbers.empty()) continue;
    const std::size_t at = kHourAt + 2 * i;
    const bool isOwn = numbers.size() == 1 && start.size() >= at + 2 &&
                       numbers.front() == ParseLong(start.substr(at, 2));
    if (!isOwn) return false;
    parts[i].numbers[0] = ICAL_RECURRENCE_ARRAY_MAX;
  }
  return true;
}

}  // namespace

std::optional<RuleDates> WorkOutRule(const std::string& value, chrono::sys_days first,
                                     std::optional<chrono::sys_days> last, std::string_view start) {
  if (value.size() > kLongestRule) return std::nullopt;
  icalrecurrencetype recur = icalrecurrencetype_from_string(value.c_str());
  if (!IsOfDays(recur.freq) || recur.interval < 1 || recur.interval > kMostInterval) return {};
  if (!TakeOwnTime(recur, start)) return std::nullopt;
  RuleDates worked;
  worked.isOpen = !last && recur.count == 0;
  // By our own clocks, not by what the library makes of the moment.
  recur.until = icaltime_null_time();
  const chrono::sys_days end = chrono::year(kLastImportedYear) / chrono::December / 31;
  const chrono::sys_days behind = last ? std::min(*last, end) : end;
  const std::unique_ptr<icalrecur_iterator, FreeIterator> iterator(
      icalrecur_iterator_new(recur, TimeOf(first)));
  if (iterator == nullptr) return std::nullopt;
  bool isWhole = false;
  for (std::size_t i = 0;; ++i) {
    const icaltimetype next = icalrecur_iterator_next(iterator.get());
    if (icaltime_is_null_time(next) != 0) {
      isWhole = true;
      break;
    }
    const chrono::sys_days date = DateOf(next);
    if (date > behind) break;
    if (i == kMostDates) return std::nullopt;
    if (date >= first) worked.dates.push_back(date);
  }
  const bool isCounted = recur.count > 0 && isWhole && !worked.dates.empty();
  if (isCounted && worked.dates.front() != first) worked.dates.pop_back();
  if (worked.dates.empty()) return worked;
  const auto rule = Candidate(recur, first);
  const chrono::sys_days checked = worked.isOpen ? end : worked.dates.back();
  if (rule && IsKept(*rule) &&
      DatesOfRule(*rule, worked.dates.front(), checked, worked.dates.size() + 1) == worked.dates) {
    worked.rule = rule;
  }
  return worked;
}

std::string UntilOf(const std::string& rule) {
  constexpr std::string_view kName = "UNTIL=";
  for (std::size_t begin = 0; begin < rule.size();) {
    const std::size_t end = std::min(rule.find(';', begin), rule.size());
    const std::string_view part = std::string_view(rule).substr(begin, end - begin);
    if (EqualIgnoringCase(part.substr(0, kName.size()), kName)) {
      return std::string(part.substr(kName.size()));
    }
    begin = end + 1;
  }
  return {};
}

}  // namespace pw
