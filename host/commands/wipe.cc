#include <algorithm>
#include <cstdint>
#include <memory>
#include <optional>
#include <ostream>
#include <string>
#include <utility>
#include <vector>

#include <CLI/CLI.hpp>

#include "host/catalogue.h"
#include "host/commands/commands.h"
#include "host/commands/confirmation.h"
#include "host/commands/profile_run.h"
#include "host/counted.h"
#include "host/record_reader.h"

// `pairwise wipe`: all records of some types deleted, as a synchronisation that overwrites does.
namespace pw {
namespace {

struct WipeOptions {
  std::vector<std::string> types;
  bool agreed = false;
};

// How many records the categories hold; those that can't be opened count none.
std::uint32_t CountRecords(EngineRun& run, const TypeCategories& type) {
  std::uint32_t count = 0;
  for (std::uint32_t i = 0; i < type.categories.Count(); ++i) {
    const auto opened = OpenForReading(run, type.type, *type.categories.At(i));
    if (opened) count += opened->source->RecordCount();
  }
  return count;
}

// All types in the module's order with the categories of those that take part. The module's walk
// ends at a type that takes part without any category, so such a one doesn't.
Outcome<std::vector<TypeCategories>> ChosenTypes(EngineRun& run,
                                                 const std::vector<std::string>& chosen) {
  for (const std::string& type : chosen) {
    const auto known = CheckType(run.Manager(), type);
    if (!known) return known.Why();
  }
  std::vector<TypeCategories> types;
  for (const std::string& name : TypeNames(run.Manager())) {
    TypeCategories type{name, false, {}};
    if (std::find(chosen.begin(), chosen.end(), name) != chosen.end()) {
      const auto categories = ListCategories(run.Manager(), name);
      if (categories) type.categories = *categories;
      type.takesPart = type.categories.Count() > 0;
    }
    types.push_back(std::move(type));
  }
  return types;
}

std::string Summary(EngineRun& run, const std::vector<TypeCategories>& types) {
  std::string text;
  for (const TypeCategories& type : types) {
    if (!type.takesPart) continue;
    text += (text.empty() ? "" : ", ") + type.type + " (" +
            Counted(CountRecords(run, type), "record", "records") + ")";
  }
  return text;
}

int Wipe(EngineRun& run, const Console& console, const WipeOptions& options) {
  const auto types = ChosenTypes(run, options.types);
  if (!types) return console.Fail(types.Why());
  const std::string summary = Summary(run, *types);
  if (summary.empty()) {
    console.messages << "there is nothing to delete\n";
    return kExitDone;
  }
  if (const auto code = NotConfirmed(console, "Delete all of " + summary + "?", options.agreed)) {
    return *code;
  }
  PairTypes(run.Objects(), *types);
  const bool isDone = run.Manager().DeleteAllData() == kResultOk;
  console.out << (isDone ? "deleted; there is now " : "stopped; there is still ")
              << Summary(run, *types) << "\n";
  if (isDone) return kExitDone;
  return console.Fail({"the organiser is busy with a dialog; close it, and wipe again"});
}

}  // namespace

void AddWipeCommand(CLI::App& app, CommandLine& line) {
  CLI::App* command = app.add_subcommand("wipe", "Delete all records of the types named");
  command->footer("Cardfiles keep their fields, and binders their sections.");
  auto options = std::make_shared<WipeOptions>();
  command->add_option("types", options->types, "Data types: contact, calendar, todo, memo")
      ->required()
      ->type_name("TYPE");
  command->add_flag("--yes", options->agreed, "Don't ask");
  command->callback([&line, options] {
    line.chosen = [&line, options] {
      const std::vector<std::string>& types = options->types;
      if (std::find(types.begin(), types.end(), "timezone") != types.end()) {
        return line.console.FailUsage("the clocks stay eight; they can't be deleted");
      }
      return WithWritingRun(line, false,
                            [&](EngineRun& run) { return Wipe(run, line.console, *options); });
    };
  });
}

}  // namespace pw
