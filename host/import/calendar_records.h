#pragma once

#include <cstddef>

#include "host/city_clocks.h"
#include "host/formats/calendar_reader.h"
#include "host/import/incoming.h"

// The records of an iCalendar file.
namespace pw {

// So many dates of a series come in as events of their own, at most; all those of a file come to so
// many bytes.
inline constexpr std::size_t kMostDatesAlone = 1'000;
inline constexpr std::size_t kMostBytesOfDates = 64 << 20;

// Its events. Each series with its changed occurrences is one record where the organiser can say
// how it recurs; else each of its dates is one, which is remarked. With `update` that isn't done to
// a series of the organiser's own, which would stay beside them. What can't come along at all is
// among the problems, and so is a file without events.
Incoming EventsOfCalendar(const CalendarFile& file, const CityClocks& cities, bool update);

// Its to-do items. A file that has none is a problem.
Incoming TodosOfCalendar(const CalendarFile& file);

}  // namespace pw
