#include "host/drive.h"

#include <unistd.h>

#include <cerrno>
#include <cstdio>
#include <iostream>
#include <memory>
#include <string>

#include <CLI/CLI.hpp>

#include "host/calendar_guard.h"
#include "host/commands/commands.h"
#include "host/commands/profile_run.h"
#include "host/native_file.h"

// `pairwise drive`: the engine's calls as JSON lines.
namespace pw {
namespace {

// A call says no more than that it failed.
void TellRefused(const EngineRun& run, const Console& console) {
  for (const std::string& file : run.RefusedFiles()) {
    if (const auto why = run.WhyClosed(file)) console.Warn({why->message});
  }
}

}  // namespace

void AddDriveCommand(CLI::App& app, CommandLine& line) {
  CLI::App* command = app.add_subcommand(
      "drive", "Make the engine's calls, one JSON object a line, on the data in place");
  auto force = std::make_shared<bool>(false);
  command->add_flag("--force", *force, "Go on though an event file is missing beside others");
  command->callback([&line, force] {
    line.chosen = [&line, force] {
      const Console& console = line.console;
      // A closed or unreadable input is no empty one: nothing of what was meant would be done.
      char nothing = 0;
      if (&console.in == &std::cin && ::read(STDIN_FILENO, &nothing, 0) != 0) {
        return console.Fail(SystemFailure("standard input", errno));
      }
      return WithDrivenRun(line, *force, [&](EngineRun& run) {
        const auto closed = ClosedCalendarFile(run);
        if (closed) return console.Fail(*closed);
        const int code = RunDrive(run.Objects(), console.in, console.out);
        TellRefused(run, console);
        // Nor is one that fails half-way an input that ended.
        if (&console.in == &std::cin && std::ferror(stdin) != 0) {
          return console.Fail(SystemFailure("standard input", EIO));
        }
        return code;
      });
    };
  });
}

}  // namespace pw
