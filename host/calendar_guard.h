#pragma once

#include <optional>
#include <string>
#include <vector>

#include "host/calendar_stems.h"
#include "host/engine_run.h"
#include "host/outcome.h"

namespace pw {

// Whether a person's calendar has files but no event file. The module takes such a calendar for an
// empty one and overwrites what is there.
bool LacksEventFile(const CalendarStem& stem);

// The first file of the profile's calendars that can't be opened for reading and writing, which the
// module takes for a missing one.
std::optional<Failure> ClosedCalendarFile(EngineRun& run);

// Why a run that writes must not start on the profile's data folder: such a file, or a missing
// event file. With `force` nothing of the calendars is in its way.
std::optional<Failure> CalendarInTheWay(EngineRun& run, bool force);

// Whether a command that writes records of these types comes upon the files of calendars.
bool AnyNeedsCalendars(const std::vector<std::string>& types);

}  // namespace pw
