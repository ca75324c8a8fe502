#include <algorithm>
#include <memory>
#include <optional>
#include <ostream>
#include <string>
#include <vector>

#include <CLI/CLI.hpp>

#include "base/codepage.h"
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

// In a run that only reads, so that the organiser doesn't hear of a look.
Outcome<std::vector<TypeLook>> LookAgain(const Profile& profile, const Console& console,
                                         const WipeOptions& options) {
  const auto run = EngineRun::Start(profile, RunMode::kReading, console.messages);
  if (!run) return run.Why();
  std::vector<TypeLook> looks = LookAtTypes(**run, options.types);
  (*run)->ShowLog();
  return looks;
}

// Looks at what there is, and asks. The exit code if nothing is to be deleted.
std::optional<int> NotToBeWiped(EngineRun& run, const Console& console, const WipeOptions& options,
                                std::vector<TypeLook>& looks) {
  if (const auto why = CalendarInTheWay(run, !AnyNeedsCalendars(options.types))) {
    return console.Fail(*why);
  }
  looks = LookAtTypes(run, options.types);
  run.ShowLog();
  const bool anyProblem = console.Warn(ProblemsOf(looks));
  if (WhatCanBeEmptied(looks).empty()) {
    console.messages << "there is nothing " << (anyProblem ? "that can be deleted" : "to delete")
                     << "\n";
    return anyProblem ? kExitSomeSkipped : kExitDone;
  }
  return NotConfirmed(console, "Delete all of " + SummaryOf(looks, Counting::kDeletable) + "?",
                      options.agreed);
}

int Delete(EngineRun& run, const Console& console, const std::vector<TypeCategories>& types) {
  PairTypes(run.Objects(), types);
  run.Objects().setWindowChain(true);
  if (run.Manager().DeleteAllData() == kResultOk) return kExitDone;
  return console.Fail({"the organiser is busy with a dialog; close it, and wipe again"});
}

// The module doesn't say what it could not empty.
int TellDeleted(const Console& console, int code, const std::vector<TypeLook>& before,
                const std::vector<TypeLook>& after) {
  const std::vector<std::string> left = NotEmptied(before, after);
  for (const std::string& location : left) {
    console.Fail({CodePageToUtf8(location) + ": could not be emptied"});
  }
  const bool isDeleted = code == kExitDone && left.empty();
  console.out << (isDeleted ? "deleted; there is now " : "not all was deleted; there is still ")
              << SummaryOf(after, Counting::kAll) << "\n";
  if (!isDeleted) return kExitFailed;
  return ProblemsOf(after).empty() ? kExitDone : kExitSomeSkipped;
}

int Wipe(const CommandLine& line, const Profile& profile, const WipeOptions& options) {
  const Console& console = line.console;
  std::vector<TypeLook> before;
  bool anyDeleted = false;
  const int code = WithWritingRun(
      line, !AnyNeedsCalendars(options.types),
      [&](EngineRun& run) {
        anyDeleted = true;
        return Delete(run, console, WhatCanBeEmptied(before));
      },
      [&](EngineRun& run) { return NotToBeWiped(run, console, options, before); });
  if (!anyDeleted) return code;
  const auto after = LookAgain(profile, console, options);
  return after ? TellDeleted(console, code, before, *after) : console.Fail(after.Why());
}

}  // namespace

void AddWipeCommand(CLI::App& app, CommandLine& line) {
  CLI::App* command = app.add_subcommand("wipe", "Delete all records of the types named");
  command->footer(
      "Cardfiles keep their fields, and binders their sections. One that can't be read whole, "
      "or not be changed, is left as it is, which is said.");
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
