#pragma once

#include <string>
#include <vector>

#include "framework/event_record.h"
#include "host/city_clocks.h"
#include "host/formats/vevent.h"

namespace pw {

// The texts and the alarm of an engine's event. It has no UID yet, no moment of change, and no
// times.
Event EventTextsOf(const PWEventRecord& record);

// The access that a number of the engine's stands for.
EventAccess AccessOf(EPWEventRecordSensitivity sensitivity);

// What an event looks like to a person, a text for each of these columns, in UTF-8. Times are by
// the clocks of the home city, those of a series by its own city's.
inline const std::vector<std::string> kEventColumns = {"Subject",   "Start", "End",    "Repeats",
                                                       "Location",  "Alarm", "Access", "Left out",
                                                       "Otherwise", "Notes"};
std::vector<std::string> EventColumns(PWRecord& record, const CityClocks& clocks);

}  // namespace pw
