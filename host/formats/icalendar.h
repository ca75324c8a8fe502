#pragma once

#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "host/formats/content_line.h"

// What all that stands in an iCalendar file is written with.
namespace pw {

// The first and the last lines of a file; the components stand in between.
void BeginCalendar(std::string& out);
void EndCalendar(std::string& out);

// A line of a value that needs no escapes.
void AppendProperty(std::string& out, std::string_view name, std::string value,
                    std::vector<ContentParameter> parameters = {});

// A line with a text; none for an empty one. A text that no line can hold has a property of our own
// beside it, "X-PAIRWISE-" before the name, with its bytes in base64: the line itself then has
// blanks in place of what it can't hold.
void AppendTextProperty(std::string& out, std::string_view name, std::string_view text);

// A line with a day of the form "YYYY-MM-DD". One that isn't in the calendar stands in a property
// of our own, as it is.
void AppendDateProperty(std::string& out, std::string_view name, const std::string& date);

// Begins the name of each property of our own.
inline constexpr std::string_view kOwnPrefix = "X-PAIRWISE-";

}  // namespace pw
