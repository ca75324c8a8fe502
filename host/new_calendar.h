#pragma once

#include <string>
#include <vector>

#include "host/engine_run.h"
#include "host/outcome.h"

namespace pw {

// The files of this machine that a calendar and its to-do list at this location have; all five at
// most.
std::vector<std::string> CalendarFilesAt(EngineRun& run, const std::string& location);

// Makes the files of a calendar as its first save does: an event is added and deleted again. There
// must be none of them yet.
Outcome<Done> MakeCalendar(EngineRun& run, const std::string& location);

}  // namespace pw
