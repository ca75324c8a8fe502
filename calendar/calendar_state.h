#pragma once

#include <cstdint>

// What of the calendar is one for the process: its counters and flags, and the version of its
// files. All are called on the engine's one thread.

// The version that the calendar's files are made in, 50 or 40, and 0 as long as nobody has asked.
// The event file that was loaded last sets it.
std::int32_t& OrganiserVersion();

// Makes it the one that the registry asks for.
void ChooseOrganiserVersion();

// The second half of an item's key: a 16-bit count that goes up with each in the high half, the low
// half of the machine's ticks below it.
std::uint32_t NewItemId();

// The key of a record in the data file, counted apart from the items: the present time and an id of
// the same form.
struct ItemIdPair {
  std::int32_t created = 0;
  std::uint32_t id = 0;
};
ItemIdPair NewItemIdPair();

// The key that a series was given last; those that follow count on from it.
std::int32_t& LastSeriesKey();

// Whether notes were cut since somebody looked and cleared it.
bool& NotesShortened();
