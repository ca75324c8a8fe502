#pragma once

#include <cstdint>
#include <string>
#include <string_view>

namespace pw {

enum class TodoPriority : std::uint8_t { kLow, kNormal, kHigh };

// A task or a call on its way out of the organiser, as plain values. All text is UTF-8; a line
// break in a value is the organiser's own, CR LF. Dates are "YYYY-MM-DD", empty for none.
struct Todo {
  std::string uid;
  std::string changed;  // the moment of the last change, "YYYYMMDDTHHMMSSZ"; empty for unknown
  std::string subject;
  std::string note;
  std::string start;
  std::string due;
  TodoPriority priority = TodoPriority::kNormal;
  bool completed = false;
  bool call = false;
};

// Appends it to an iCalendar file as a VTODO. `now`, of the form of `changed`, stands where the
// moment of the change isn't known. docs/formats/ical.md has the map.
void AppendVTodo(std::string& out, const Todo& todo, std::string_view now);

}  // namespace pw
