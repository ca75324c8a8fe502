#include "host/answers.h"
#include "host/commands/commands.h"
#include "host/commands/option_pages.h"
#include "host/setup_wizard.h"

// `pairwise setup`: the engine's setup wizard with the module's page.
namespace pw {
namespace {

std::optional<PWConfig> ShowWizard(EngineRun& run) {
  SetupWizard wizard(run.Manager().Name().Str() + " Setup");
  if (run.Manager().AddSetupPages(&wizard) != kResultOk) return std::nullopt;
  if (wizard.DoModal(kNoWindow) != SheetAnswer::kOk) return std::nullopt;
  return run.Objects().config;
}

}  // namespace

void AddSetupCommand(CLI::App& app, CommandLine& line) {
  AddOptionPagesCommand(app, line, "setup", "Say where an installed organiser keeps its data",
                        {{kSetupDialog}, ShowWizard});
}

}  // namespace pw
