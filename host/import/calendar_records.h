#pragma once

#include "host/city_clocks.h"
#include "host/formats/calendar_reader.h"
#include "host/import/incoming.h"

// The records of an iCalendar file.
namespace pw {

// Its events. Each series with its changed occurrences is one record where the organiser can say
// how it recurs; else each of its dates is one, which is remarked. What can't come along at all is
// among the problems.
Incoming EventsOfCalendar(const CalendarFile& file, const CityClocks& cities);

// Its to-do items.
Incoming TodosOfCalendar(const CalendarFile& file);

}  // namespace pw
