#pragma once

#include <chrono>
#include <cstdint>
#include <optional>

#include "framework/values.h"
#include "host/formats/calendar_reader.h"
#include "host/import/calendar_moments.h"
#include "host/outcome.h"

// When the events of an iCalendar file take place, in the engine's terms.
namespace pw {

// UTC, or dates of which the last one counts.
struct EventSpan {
  bool isAllDay = false;
  PWDateTimeStamp start;
  PWDateTimeStamp end;
};

PWDateTimeStamp StampOfDate(std::chrono::sys_days date);

// A failure says what is wrong with its times, in a few words.
Outcome<EventSpan> SpanOf(const ReadEvent& read, CalendarMoments& moments);

// The span of a series as it is from another start on: to the same time by the clock where it
// begins at its own one, and else as long. Nothing where that reaches behind the years of 32-bit
// seconds.
std::optional<EventSpan> SpanFrom(const LocalStart& start, const ReadEvent& series,
                                  const EventSpan& span, CalendarMoments& moments);

// When a time of a series begins, by the series' clocks; a date does at the series' own time.
// Nothing for a text that is none.
std::optional<LocalStart> StartOf(const CalendarTime& time, const ReadEvent& series,
                                  CalendarMoments& moments);

// Whether it goes over midnight by these clocks, or lasts all of several days.
bool IsOfSeveralDays(const EventSpan& span, const WMCityRecord* home);

// Makes one with times a minute long where it begins and ends within the same, as the organiser has
// none that short. Whether it had to.
bool Lengthen(EventSpan& span, const WMCityRecord* home);

}  // namespace pw
