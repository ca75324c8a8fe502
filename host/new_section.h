#pragma once

#include <string>

#include "host/engine_run.h"
#include "host/outcome.h"

namespace pw {

// Makes a section, and the binder of the same name if there is none. Gives its location. A section
// that is there fails, and so do files of a binder that the module would empty, or not open.
Outcome<std::string> MakeSection(EngineRun& run, const std::string& name);

}  // namespace pw
