#pragma once

#include <chrono>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "host/rule_of_pattern.h"

namespace pw {

// The last year that the organiser has.
inline constexpr int kLastImportedYear = 2029;

// What a rule of an iCalendar file comes to.
struct RuleDates {
  // From the first date through the organiser's last year, ascending.
  std::vector<std::chrono::sys_days> dates;

  bool isOpen = false;  // it goes on behind them

  // The organiser's own way to say so, where it gives exactly these dates.
  std::optional<CalendarRule> rule;
};

// Works out the value of an RRULE for a series whose first date, and last one where the rule has a
// last moment, are those by the series' own clocks; `start` is the first moment as it is written. A
// first date that the rule doesn't give isn't among its dates, but counts as one of them. Nothing
// for a value that isn't a rule, one that repeats within a day or at another time than the first
// one's, or one of more than `kMostDates` dates.
inline constexpr std::size_t kMostDates = 20'000;
std::optional<RuleDates> WorkOutRule(const std::string& value, std::chrono::sys_days first,
                                     std::optional<std::chrono::sys_days> last,
                                     std::string_view start);

// The value of UNTIL in a rule, or empty.
std::string UntilOf(const std::string& rule);

}  // namespace pw
