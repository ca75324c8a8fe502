#pragma once

#include <cstdint>
#include <vector>

#include "calendar/recurrence_rule.h"

// The dates of a series, by the clocks of the working city, which must be of the series' own zone:
// an occurrence keeps the hour that the clocks show when daylight time begins or ends. One that
// falls into the hour that is skipped then moves on by an hour, and those that are counted on from
// it stay there. All are called on the engine's one thread.

// Appends the moments of all occurrences, each at the time of day of `firstDay`: ascending, but for
// a rule by weekdays of the month with several of them, which gives each month's week by week.
// False for a rule that has no dates: an unknown kind, an interval or a range that makes no sense.
//
// Takes time in proportion to the days of its range at most, which 32 bits of seconds bound: a rule
// that would go on behind them ends there.
bool ExpandRule(const WMRecurrenceRule& rule, std::vector<std::int32_t>& out);

// The first day of the month of a moment, and the moment so many days later or earlier, both at the
// same time of day.
std::int32_t FirstOfMonth(std::int32_t seconds);
std::int32_t AddDays(std::int32_t seconds, std::int32_t days);

// 0 for two moments on the same local date; else 1 where `a` isn't below `b`, and -1 where it is.
std::int32_t CompareLocalDates(std::int32_t a, std::int32_t b);

namespace pw::calendar {

// For each of the dates in turn, takes out the occurrence of the same local date: the list is
// walked from its front, and up to the first occurrence of a later date. The order of both is any.
void TakeOutDates(std::vector<std::int32_t>& occurrences, const std::vector<std::int32_t>& dates);

}  // namespace pw::calendar
