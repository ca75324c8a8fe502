#pragma once

#include <cstdint>
#include <string>

class PWEventRecord;
class WMCalendarStore;
class WMRecurringItem;

// Recurring events with times, as the organiser keeps them: a series in the recurring file, and an
// item in the event file for each of its occurrences.

// Fills a new series. The working zone must be the pattern's. False if the pattern has no type.
//
// A pattern with an end is kept whole if that is within five years of the first occurrence's, else
// it is cut to as many years as its type allows. One without an end always is; if it began in an
// earlier year it begins in the present one. A text that warns of the cut is put into `message`.
bool BuildRecurringItem(WMRecurringItem& item, PWEventRecord& event, std::string& message);

// Appends a series of that key, its occurrences and those that are otherwise. 0, or 1 and nothing
// done if its pattern has no type. The working zone is the same afterwards.
std::int32_t AddRecurringEvent(WMCalendarStore& store, PWEventRecord& event, std::int32_t key,
                               std::string& message);

// Removes the series of that index, and all items of the event file that have its key.
void RemoveRecurringItem(WMCalendarStore& store, std::size_t index);

// Fills the event from a series: its pattern and exceptions by the clocks of its zone, and the
// dates of its first occurrence, deleted or not. The event has no dates if the series has none.
// False for a rule that no pattern can say; of one with several weekdays or weeks `message` tells.
bool RecurringItemToEvent(const WMRecurringItem& item, PWEventRecord& event, std::string& message);
