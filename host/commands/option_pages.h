#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "framework/config.h"
#include "host/commands/commands.h"
#include "host/engine_run.h"

// What the commands that show the module's option pages have in common: somebody at a terminal
// works the pages, or a file of answers does, and what was settled goes into the profile.
namespace pw {

struct OptionPages {
  std::vector<std::int32_t> dialogs;  // the pages, by their numbers

  // Shows the pages in a run, with dialogs that can be worked. Gives the settings that they have
  // left; nothing if they were cancelled.
  std::function<std::optional<PWConfig>(EngineRun&)> show;
};

// Adds the command with all its options.
void AddOptionPagesCommand(CLI::App& app, CommandLine& line, const char* name, const char* about,
                           const OptionPages& pages);

}  // namespace pw
