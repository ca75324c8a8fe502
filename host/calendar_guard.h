#pragma once

#include <optional>

#include "host/calendar_stems.h"
#include "host/engine_run.h"
#include "host/outcome.h"

namespace pw {

// Whether a person's calendar has files but no event file. The module takes such a calendar for an
// empty one and overwrites what is there.
bool LacksEventFile(const CalendarStem& stem);

// Why a run that writes must not start on the profile's data folder: a file of a calendar that
// can't be opened for reading and writing, which the module takes for a missing one; or, unless
// `force`, a missing event file.
std::optional<Failure> CalendarInTheWay(EngineRun& run, bool force);

}  // namespace pw
