#pragma once

#include <cstddef>
#include <string>
#include <vector>

#include "framework/record.h"
#include "timeplace/city_format.h"

namespace pw {

// Ada's calendar in the sample, in the order in which it is added: appointments, three of which
// overlap, series, one of them across a change of the clocks and with exceptions, a birthday, and a
// trip of several days.
//
// Times are those of the home city's clocks, of UTC for null.
std::vector<PWRecord> SampleEvents(const WMCityRecord* home);

// The event file of a calendar without events, as the organiser makes it; and the template from
// which it then makes the calendar's holidays.
std::string SampleEventFile();
std::string SampleHolidays();

}  // namespace pw
