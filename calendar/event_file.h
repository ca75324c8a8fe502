#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "calendar/item_list.h"
#include "timeplace/year_frame.h"

// The items of the event file, on their way between its bytes and two lists: those of their own,
// and the occurrences of series, changed ones included.
//
// Appends the items of all days that can be read, in the order of the file. A damaged day is left
// out, as is one that shares bytes with a day before it; where it is the last one of its year, so
// are all years behind it. False if the file has no whole year index, a year without a table, or
// one whose table is cut short: nothing is read then.
bool ReadEvents(std::string_view file, ItemList& plainItems, ItemList& occurrenceItems);

// The whole file, with those of the second list behind those of the first wherever they share a
// slot. Items before 1970, and those that their slot has no room for, are left out. Nothing if the
// file would outgrow its 32-bit offsets.
std::optional<std::string> EncodeEvents(const pw::frame::Header& header, const ItemList& plainItems,
                                        const ItemList& occurrenceItems);
