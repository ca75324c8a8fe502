#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

#include "host/formats/content_line.h"

namespace pw {

// What stands between BEGIN and END in an iCalendar file: the lines of its own, and of what is
// within it. Names of components are in capitals.
struct CalendarComponent {
  std::string name;
  std::size_t line = 0;  // where it begins
  std::vector<ContentLine> lines;
  std::vector<CalendarComponent> inner;
};

// The first line of that name, letter case ignored, or null; and its value, which is empty then.
const ContentLine* FindLine(const CalendarComponent& component, std::string_view name);
std::string ValueOf(const CalendarComponent& component, std::string_view name);

std::string InCapitals(std::string text);

// The names of a VEVENT's or VTODO's properties that no record has a place for, each once, and "a
// second" of those that it has one place for: a remark in one line, or empty. Passed over in
// silence are those that tell nothing of the event, and other programs' own.
std::string LeftOutOf(const CalendarComponent& component);

}  // namespace pw
