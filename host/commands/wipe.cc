#include <algorithm>
#include <memory>
#include <optional>
#include <ostream>
#include <string>
#include <vector>

#include <CLI/CLI.hpp>

#include "host/calendar_guard.h"
#include "host/category_look.h"
#include "host/commands/commands.h"
#include "host/commands/confirmation.h"
#include "host/commands/profile_run.h"

// `pairwise wipe`: all records of some types deleted, as a synchronisation that overwrites does.
namespace pw {
namespace {

struct WipeOptions {
  std::vector<std::string> types;
  bool agreed = false;
};

// As a run that only reads sees them, so that the organiser doesn't hear of a look.
Outcome<std::vector<TypeLook>> Look(const Profile& profile, const Console& console,
                                    const WipeOptions& options) {
  const auto run = EngineRun::Start(profile, RunMode::kReading, console.messages);
  if (!run) return run.Why();
  std::vector<TypeLook> looks = LookAtTypes(**run, options.types);
  (*run)->ShowLog();
  return looks;
}

int Delete(EngineRun& run, const Console& console, const std::vector<TypeCategories>& types) {
  PairTypes(run.Objects(), types);
  run.Objects().setWindowChain(true);
  if (run.Manager().DeleteAllData() == kResultOk) return kExitDone;
  return console.Fail({"the organiser is busy with a dialog; close it, and wipe again"});
}

int Wipe(const CommandLine& line, const Profile& profile, const WipeOptions& options) {
  const Console& console = line.console;
  const auto before = Look(profile, console, options);
  if (!before) return console.Fail(before.Why());
  const bool anyProblem = console.Warn(ProblemsOf(*before));
  const std::vector<TypeCategories> types = WhatCanBeEmptied(*before);
  if (types.empty()) {
    console.messages << "there is nothing " << (anyProblem ? "that can be deleted" : "to delete")
                     << "\n";
    return anyProblem ? kExitSomeSkipped : kExitDone;
  }
  const std::string question = "Delete all of " + SummaryOf(*before) + "?";
  if (const auto code = NotConfirmed(console, question, options.agreed)) return *code;

  std::optional<int> deleted;
  const int code = WithWritingRun(line, !AnyNeedsCalendars(options.types), [&](EngineRun& run) {
    deleted = Delete(run, console, types);
    return *deleted;
  });
  if (!deleted) return code;
  const auto after = Look(profile, console, options);
  if (!after) return console.Fail(after.Why());
  console.out << (*deleted == kExitDone ? "deleted; there is now " : "stopped; there is still ")
              << SummaryOf(*after) << "\n";
  if (code != kExitDone) return code;
  return ProblemsOf(*after).empty() ? kExitDone : kExitSomeSkipped;
}

}  // namespace

void AddWipeCommand(CLI::App& app, CommandLine& line) {
  CLI::App* command = app.add_subcommand("wipe", "Delete all records of the types named");
  command->footer(
      "Cardfiles keep their fields, and binders their sections. One that can't be read whole is "
      "left as it is, which is said.");
  auto options = std::make_shared<WipeOptions>();
  command->add_option("types", options->types, "Data types: contact, calendar, todo, memo")
      ->required()
      ->check(CLI::IsMember({"contact", "calendar", "todo", "memo", "timezone"}))
      ->type_name("TYPE");
  command->add_flag("--yes", options->agreed, "Don't ask");
  command->callback([&line, options] {
    line.chosen = [&line, options] {
      const std::vector<std::string>& types = options->types;
      if (std::find(types.begin(), types.end(), "timezone") != types.end()) {
        return line.console.FailUsage("the clocks stay eight; they can't be deleted");
      }
      return WithProfile(line,
                         [&](const Profile& profile) { return Wipe(line, profile, *options); });
    };
  });
}

}  // namespace pw
