#pragma once

#include <cstdint>

#include "calendar/recurrence_rule.h"
#include "framework/recurrence.h"

class PWEventRecord;

// The engine's six patterns in the organiser's four kinds of rules, and back.
//
//   pattern                rule kind            interval    masks
//   1 daily                4 daily              its own
//   2 weekly               3 weekly             its own     weekdays
//   3 monthly by date      2 monthly by date    its own     days, bit for bit
//   4 monthly by day       1 by weekday         its own     one weekday, one week
//   5 yearly by date       2 monthly by date    12          one day
//   6 yearly by day        1 by weekday         12          one weekday, one week
//
// The engine's weekdays count from 1 for Sunday, and 0 is Saturday; the bits of the organiser's
// weekday mask go from 0 for Sunday to 6. What is out of its range sets no bit. The month of a
// yearly pattern isn't in the rule: its first day tells it.

// Fills all of the rule but its days and its slot. False, and nothing done, for a pattern of no
// type.
bool RuleOfPattern(PWRecurrancePattern& pattern, WMRecurrenceRule& rule);

// How many years a series of that type is cut to.
std::int32_t MostYears(ERecurranceType type);

// Gives the event a pattern for the rule, in the working zone, which must be the series' own. Its
// end is the local date of the rule's last day; for yearly patterns by the machine's clock, as the
// organiser has it. Any other interval of whole years becomes one year.
//
// False, and nothing done, for a rule of no kind. A rule by weekday with several weeks or weekdays
// is `kManifold`: the pattern has the last of each.
enum class PatternResult { kDone, kManifold, kNoKind };
PatternResult PatternOfRule(const WMRecurrenceRule& rule, PWEventRecord& event);
