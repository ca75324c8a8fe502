#pragma once

#include <string>
#include <vector>

#include "host/engine_run.h"

// Files that a run which writes can't change, told before it starts.
namespace pw {

enum class FileChange {
  kSaved,     // written in their places
  kMadeAnew,  // emptied, for which those of calendars and of to-do items are removed and made anew
};

// Why files of a category of that location can't be changed so, a line each. None where all can, as
// far as can be told beforehand. Those of the clocks are those of the empty location.
std::vector<std::string> ClosedFiles(EngineRun& run, const std::string& type,
                                     const std::string& location, FileChange change);

}  // namespace pw
