#pragma once

#include <set>
#include <string>
#include <vector>

#include "host/formats/calendar_reader.h"
#include "host/import/event_span.h"

namespace pw {

// A series and its changed occurrences, or an event alone. Nothing is owned.
struct EventGroup {
  const ReadEvent* series = nullptr;
  std::vector<const ReadEvent*> changed;  // that take the place of a date which can be read
  std::vector<CalendarTime> cancelled;    // occurrences that are no more
};

// What a series has beside the dates of its rule, by its own clocks, and what it lacks of them.
struct SeriesDates {
  std::set<LocalStart> beside;
  std::set<LocalStart> deleted;
  std::vector<std::string> remarks;  // of those that can't be read
};
SeriesDates DatesOf(const EventGroup& group, CalendarMoments& moments);

// All starts of a series that is on these dates by its rule: those, its own first one and the ones
// beside, without those deleted or otherwise.
std::set<LocalStart> StartsOf(const EventGroup& group, const SeriesDates& dates,
                              const std::vector<std::chrono::sys_days>& ofRule,
                              CalendarMoments& moments);

}  // namespace pw
