#pragma once

#include <cstdint>
#include <string>

class PWRecord;
class WMCalendarStore;

// The ways of an engine's event into the calendar's lists. An index is a number of the store's. A
// text that warns of what was lost is put into `message`, which is empty otherwise.
//
// Every change works the bounds out again, and leaves the index of what was added or changed in the
// store's `currentRecord`.

// 0, also for an event of no length, which isn't stored; 1, and nothing was added, if more than two
// others take place at its time, or an all-day series without an end isn't yearly.
std::int32_t AddEvent(WMCalendarStore& store, PWRecord& record, std::string& message);

// Changes the record of that index, or, where it goes to another list now, removes it and adds the
// event, whatever comes of that. A series keeps its key.
std::int32_t UpdateEvent(WMCalendarStore& store, std::uint32_t index, PWRecord& record,
                         std::string& message);

// 0, or 1 for an index that is no record. A series goes with all its occurrences.
std::int32_t DeleteByIndex(WMCalendarStore& store, std::uint32_t index);

// Replaces the record. 0, or 1 for an index that is no record, or one that the engine has no words
// for.
std::int32_t ReadByIndex(const WMCalendarStore& store, std::uint32_t index, PWRecord* record,
                         std::string& message);
