#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <vector>

#include "host/console.h"
#include "host/engine_run.h"

namespace pw {

// A template for a new cardfile.
struct CardTemplateChoice {
  std::size_t place = 0;            // in the organiser's list, from 0
  std::vector<std::string> fields;  // in the organiser's code page
};

// Chooses the first template of that name from the organiser's list, or has somebody at a terminal
// choose. Gives the exit code where nothing was chosen; why was told then.
std::optional<int> ChooseCardTemplate(EngineRun& run, const Console& console,
                                      const std::optional<std::string>& wanted,
                                      CardTemplateChoice& chosen);

}  // namespace pw
