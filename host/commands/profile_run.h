#pragma once

#include <functional>
#include <memory>

#include "host/commands/commands.h"
#include "host/engine_run.h"

namespace pw {

// Opens the profile that the command line names, starts a run over it, does the work, and shows
// what was logged. Gives the exit code, which is the work's own where it came to that.
int WithRun(const CommandLine& line, RunMode mode, const std::function<int(EngineRun&)>& work);

}  // namespace pw
