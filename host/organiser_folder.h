#pragma once

#include <string>

#include "host/engine_run.h"

namespace pw {

// The folder of the clocks and the cities, as the organiser's main key names it: a location of the
// organiser's, or empty where none is named.
std::string OrganiserFolder(EngineRun& run);

}  // namespace pw
