#pragma once

#include <cstddef>
#include <string>
#include <vector>

#include "host/city_clocks.h"
#include "host/record_reader.h"
#include "platform/clock.h"

namespace pw {

// Events as an iCalendar file.
//
// A series has a rule where that gives the very occurrences that the event file holds; else it has
// their dates, as the engine has no words for some of the organiser's rules. Its times are by the
// clocks of a city that fits its zone; all others, and those of a series that no city fits, are in
// UTC.
struct EventCalendar {
  std::string text;
  std::size_t undated = 0;  // series that have no date, and so no place in such a file
};

// The clock tells the present, for records whose change isn't known, and what the machine's own
// clocks showed when.
EventCalendar MakeEventCalendar(const std::vector<CategoryRecords>& categories,
                                const CityClocks& cities, Clock& clock);

}  // namespace pw
