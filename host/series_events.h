#pragma once

#include <chrono>
#include <cstdint>
#include <string>
#include <vector>

#include "framework/event_record.h"
#include "host/formats/vevent.h"
#include "timeplace/city_format.h"

namespace pw {

// The clocks that a series goes by: those of a city, under the name that it has in the file, or UTC
// for null.
struct SeriesClock {
  const WMCityRecord* city = nullptr;
  std::string name;

  CalendarTime At(std::int32_t utc) const;
};

// A date, and the one that an engine's stamp has.
CalendarTime DateOf(std::chrono::sys_days date);
std::chrono::sys_days DateOf(const PWDateTimeStamp& stamp);

// Fills in when a yearly all-day event takes place.
void SetYearly(Event& event, const PWEventRecord& record);

// The series, and behind it those of its occurrences that are otherwise. `series` has its texts and
// its UID; `stored` are the starts of the occurrences that are as it says, ascending. The record
// has dates.
std::vector<Event> EventsOfSeries(Event series, const PWEventRecord& record,
                                  const std::vector<std::int32_t>& stored,
                                  const SeriesClock& clock);

}  // namespace pw
