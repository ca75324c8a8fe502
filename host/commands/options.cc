#include "host/answers.h"
#include "host/commands/commands.h"
#include "host/commands/option_pages.h"

// `pairwise options`: what a synchronisation may do, and where the data are.
namespace pw {
namespace {

// The sheet works on settings of its own, which are taken over when it was left by OK.
std::optional<PWConfig> ShowOptions(EngineRun& run) {
  PWConfig settings = run.Objects().config;
  const bool isCancelled = run.Manager().ShowOptions(&settings);
  if (isCancelled) return std::nullopt;
  return settings;
}

}  // namespace

void AddOptionsCommand(CLI::App& app, CommandLine& line) {
  AddOptionPagesCommand(app, line, "options", "Settle what to synchronise, and in which folder",
                        {{kSynchronizeDialog, kFolderDialog}, ShowOptions});
}

}  // namespace pw
