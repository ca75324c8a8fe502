#pragma once

#include <string>
#include <vector>

#include "host/engine_run.h"

namespace pw {

// What of the task file and the call file can't be read, a line for each finding; the module leaves
// that out without a word. `prefix` is the location of their category.
std::vector<std::string> TodoFileProblems(EngineRun& run, const std::string& prefix);

}  // namespace pw
