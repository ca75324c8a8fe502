#pragma once

#include "host/import/event_group.h"
#include "host/import/incoming.h"
#include "host/import/rule_dates.h"

namespace pw {

// Why the organiser can't keep the series as one though it may know its rule, in a few words; empty
// where it can. The span is that on its first date.
std::string WhyNoSeries(const EventGroup& group, const EventSpan& first, const RuleDates& worked,
                        const WMCityRecord* home, CalendarMoments& moments);

// Gives the record, which has the series' texts, the pattern of its rule. What of a changed
// occurrence can't come along is remarked. `span` is the series' own; the organiser has the rule,
// which has dates. `last` is the last date that the rule itself names, or nothing.
void SetPattern(const EventGroup& group, const EventSpan& span, const SeriesDates& dates,
                const RuleDates& worked, std::optional<std::chrono::sys_days> last,
                CalendarMoments& moments, IncomingRecord& record);

}  // namespace pw
