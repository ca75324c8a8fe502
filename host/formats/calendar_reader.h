#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "host/formats/line_errors.h"
#include "host/formats/vevent.h"
#include "host/formats/vtodo.h"

// iCalendar files, as our own export and other programs write them.
namespace pw {

// A VEVENT. `changed` stays empty, and so do texts that it lacks; a missing end may be told by a
// duration.
struct ReadEvent {
  std::size_t line = 0;  // where it begins
  Event event;
  std::optional<std::int32_t> duration;  // seconds, where it has no end
  bool isCancelled = false;
  std::vector<std::string> remarks;  // for a person, what of it has no place here
};

// A VTODO; `changed` stays empty.
struct ReadTodo {
  std::size_t line = 0;
  Todo todo;
  bool isCancelled = false;
  std::vector<std::string> remarks;
};

// A VTIMEZONE: its offsets from Greenwich in minutes, east positive, as its last blocks tell them.
struct ReadZone {
  std::string name;
  std::optional<std::int32_t> standard;
  std::optional<std::int32_t> daylight;
};

struct CalendarFile {
  std::vector<ReadEvent> events;
  std::vector<ReadTodo> todos;
  std::vector<ReadZone> zones;
  LineErrors errors;
};

// Reads all components of a file; those of other kinds are passed over. Properties and alarms that
// no record has a place for are remarked. A value that isn't UTF-8 is taken as the organiser's code
// page. A property of our own that has a text exactly is taken before the one
// beside it. A damaged line is reported and the rest of its component kept; an event without a
// start, or a component that doesn't end, is reported and left out. Components deeper than four in
// each other are passed over.
CalendarFile ReadCalendarFile(std::string_view text);

// Seconds of a value such as "PT15M", "-P1DT2H" or "P2W"; nothing for anything else, or what
// doesn't fit.
std::optional<std::int32_t> ReadDuration(std::string_view value);

}  // namespace pw
