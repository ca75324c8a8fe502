#include <memory>
#include <optional>
#include <ostream>
#include <string>

#include <CLI/CLI.hpp>

#include "base/codepage.h"
#include "host/catalogue.h"
#include "host/commands/commands.h"
#include "host/commands/confirmation.h"
#include "host/commands/profile_run.h"

// `pairwise remove`: a cardfile deleted.
namespace pw {
namespace {

struct RemoveOptions {
  std::string type;
  std::string category;
  bool agreed = false;
};

// The exit code if the person doesn't agree.
std::optional<int> NotAgreed(EngineRun& run, const Console& console, const RemoveOptions& options) {
  const auto found = ChooseCategories(run.Manager(), options.type, options.category);
  if (!found) return console.Fail(found.Why());
  const std::string location = found->At(0)->Location.Str();
  if (const auto why = run.WhyClosed(location)) return console.Fail(*why);
  const std::string file = run.NativePathOf(location);
  return NotConfirmed(console, "Remove " + file + "?", options.agreed);
}

// The module deletes the file that a location names, and of other types than cardfiles no location
// names one.
int Remove(EngineRun& run, const Console& console, const RemoveOptions& options) {
  const auto found = ChooseCategories(run.Manager(), options.type, options.category);
  if (!found) return console.Fail(found.Why());
  const PWSourceCategory& category = *found->At(0);
  const std::string file = run.NativePathOf(category.Location.Str());
  if (run.Manager().DeleteCategory(options.type.c_str(), category.Location) != kResultOk) {
    return console.Fail({file + ": could not be removed"});
  }
  console.out << file << " is removed\n";
  return kExitDone;
}

}  // namespace

void AddRemoveCommand(CLI::App& app, CommandLine& line) {
  CLI::App* command = app.add_subcommand("remove", "Remove a cardfile");
  command->footer(
      "Sections of a binder, calendars and to-do lists can't be removed; `wipe` empties them.");
  auto options = std::make_shared<RemoveOptions>();
  command->add_option("type", options->type, "Data type: contact")
      ->required()
      ->check(CLI::IsMember({"contact", "calendar", "todo", "memo", "timezone"}))
      ->type_name("TYPE");
  command->add_option("category", options->category, "Name or location of the cardfile")
      ->required()
      ->type_name("CATEGORY");
  command->add_flag("--yes", options->agreed, "Don't ask");
  command->callback([&line, options] {
    line.chosen = [&line, options] {
      const Console& console = line.console;
      if (options->type == "timezone") {
        return console.FailUsage("the clocks stay eight; none can be removed");
      }
      if (options->type != "contact") {
        return console.FailUsage("only a contact category can be removed; `pairwise wipe " +
                                 options->type + "` empties those of its type");
      }
      // Whatever there is of calendars.
      return WithWritingRun(
          line, true, [&](EngineRun& run) { return Remove(run, console, *options); },
          [&](EngineRun& run) { return NotAgreed(run, console, *options); });
    };
  });
}

}  // namespace pw
