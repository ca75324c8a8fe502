#pragma once

#include <chrono>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "framework/event_record.h"
#include "framework/recurrence.h"

// The pattern of a recurring event in the terms of iCalendar.
namespace pw {

struct CalendarRule {
  enum class Unit : std::uint8_t { kDay, kWeek, kMonth, kYear };
  Unit unit = Unit::kDay;
  std::int32_t interval = 1;            // from one such unit to the next, at least 1
  std::vector<std::uint8_t> weekdays;   // from 0 for Sunday; of a month or year there is one
  std::int32_t week = 0;                // of the month, from 1, or -1 for the last; 0 for none
  std::vector<std::int32_t> monthDays;  // ascending from 1, -1 for the last behind them
  std::uint8_t month = 0;               // of a year, from 1
};

// Nothing for a pattern that has no dates: of no type, or with an interval, a day or a month that
// there isn't.
std::optional<CalendarRule> RuleOfPattern(PWRecurrancePattern& pattern);

// Gives the event a pattern of this rule, in place of any other. Months and years by a weekday name
// one weekday, years by a date one date, and years come each year.
void SetRule(PWEventRecord& event, const CalendarRule& rule);

// As the value of RRULE, without an end. Weeks begin on the weekday of the series' first date, as
// the organiser counts them.
std::string RuleValue(const CalendarRule& rule, std::chrono::sys_days first);

// "every 2 weeks on Mon, Wed"
std::string RuleInWords(const CalendarRule& rule);

// The dates of a series from its first one through the last, ascending; the first `most` of them.
std::vector<std::chrono::sys_days> DatesOfRule(const CalendarRule& rule,
                                               std::chrono::sys_days first,
                                               std::chrono::sys_days last, std::size_t most);

}  // namespace pw
