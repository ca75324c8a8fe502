#pragma once

#include <string>
#include <vector>

#include "host/engine_run.h"

namespace pw {

// What of a calendar's files the module can't read, a line each. `prefix` is the location of their
// category.
std::vector<std::string> ProblemsOfCalendar(EngineRun& run, const std::string& prefix);

}  // namespace pw
