#pragma once

#include <string_view>

// Dates and times as texts, "YYYY-MM-DD" and "YYYY-MM-DDTHH:MM:SS".
namespace pw {

// Whether each "9" of the form meets a digit and each other character itself.
bool HasForm(std::string_view text, std::string_view form);

// Whether the text is such a date, of an existing day.
bool IsDate(std::string_view text);

// Whether the text is such a date and time, of an existing day and a time of it.
bool IsStamp(std::string_view text);

}  // namespace pw
