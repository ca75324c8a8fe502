#include "host/drive.h"

#include <CLI/CLI.hpp>

#include "host/commands/commands.h"
#include "host/commands/profile_run.h"

// `pairwise drive`: the engine's calls as JSON lines.
namespace pw {

void AddDriveCommand(CLI::App& app, CommandLine& line) {
  CLI::App* command = app.add_subcommand(
      "drive", "Make the engine's calls, one JSON object a line, on the data in place");
  command->callback([&line] {
    line.chosen = [&line] {
      const Console& console = line.console;
      return WithRun(line, RunMode::kWriting, [&](EngineRun& run) {
        return RunDrive(run.Objects(), console.in, console.out);
      });
    };
  });
}

}  // namespace pw
