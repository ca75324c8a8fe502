#pragma once

#include <string>
#include <vector>

#include "host/engine_run.h"

namespace pw {

// Whether there is a file of the calendar at the location of a category.
bool HasCalendar(const std::string& prefix);

// What of a calendar's files the module can't read, a line each. `prefix` is the location of their
// category.
std::vector<std::string> ProblemsOfCalendar(EngineRun& run, const std::string& prefix);

}  // namespace pw
