#pragma once

#include <chrono>
#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "framework/event_record.h"
#include "host/formats/vevent.h"
#include "host/stored_occurrences.h"
#include "timeplace/city_format.h"

namespace pw {

// The clocks that a series goes by: those of a city, or UTC for null; and the name under which they
// stand in the file, without which all its times are UTC there.
struct SeriesClock {
  const WMCityRecord* city = nullptr;
  std::string name;

  // Whether the file goes by the same clocks.
  bool IsTold() const { return city == nullptr || !name.empty(); }

  CalendarTime At(std::int32_t utc) const;
};

// A date, and the one that an engine's stamp has.
CalendarTime DateOf(std::chrono::sys_days date);
std::chrono::sys_days DateOf(const PWDateTimeStamp& stamp);

// Fills in when a yearly all-day event takes place.
void SetYearly(Event& event, const PWEventRecord& record);

// The series, and behind it those of its occurrences that are otherwise. `series` has its texts and
// its UID; `stored` are the occurrences that are as it says, ascending, or nothing where they are
// those of the pattern without its exceptions. The record has dates.
std::vector<Event> EventsOfSeries(Event series, const PWEventRecord& record,
                                  const std::optional<std::vector<Occurrence>>& stored,
                                  const SeriesClock& clock);

}  // namespace pw
