#pragma once

#include <filesystem>
#include <optional>
#include <string>
#include <vector>

#include "host/engine_run.h"
#include "host/outcome.h"

namespace pw {

// A person's calendar files without the event file. The module takes such a calendar for an empty
// one and overwrites what is there, so that it is better to know. A line for each person, naming
// the file that is there; empty where all is well.
std::vector<std::string> MissingEventFiles(const std::filesystem::path& folder);

// Why a run that writes must not start on the profile's data folder: a file of a calendar that
// can't be opened for reading and writing, which the module takes for a missing one; or, unless
// `force`, a missing event file.
std::optional<Failure> CalendarInTheWay(EngineRun& run, bool force);

}  // namespace pw
