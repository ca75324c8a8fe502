#pragma once

#include <string>
#include <string_view>

#include "timeplace/city_format.h"

namespace pw {

// Whether the clocks of a city can be told in an iCalendar file: its daylight rule is none, or one
// of days and hours that there are.
bool CanBeTold(const WMCityRecord& city);

// Appends the clocks of a city that can be told to an iCalendar file, as a VTIMEZONE of that name.
// As with the organiser, its rule holds for all years, here from 1970 on.
void AppendVTimezone(std::string& out, std::string_view name, const WMCityRecord& city);

}  // namespace pw
