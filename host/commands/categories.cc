#include <memory>
#include <ostream>
#include <string>
#include <vector>

#include <CLI/CLI.hpp>

#include "base/codepage.h"
#include "host/catalogue.h"
#include "host/commands/commands.h"
#include "host/commands/profile_run.h"
#include "host/text_table.h"

// `pairwise categories`: what can be listed, shown and exported.
namespace pw {
namespace {

void AppendRows(TextTable& table, const std::string& type,
                const PWSourceCategoryVector& categories) {
  for (std::uint32_t i = 0; i < categories.Count(); ++i) {
    const PWSourceCategory& category = *categories.At(i);
    table.rows.push_back(
        {type, CodePageToUtf8(category.Name.View()), CodePageToUtf8(category.Location.View())});
  }
}

int Categories(EngineRun& run, const Console& console, const std::string& type) {
  TextTable table{{"TYPE", "NAME", "LOCATION"}, {}};
  if (!type.empty()) {
    const auto categories = ListCategories(run.Manager(), type);
    if (!categories) return console.Fail(categories.Why());
    AppendRows(table, type, *categories);
  } else {
    for (const std::string& each : TypeNames(run.Manager())) {
      const auto categories = ListCategories(run.Manager(), each);
      // A type that isn't served has none.
      if (categories) AppendRows(table, each, *categories);
    }
  }
  console.out << (console.outIsTerminal ? RenderForPeople(table, console.width)
                                        : RenderForPrograms(table));
  return kExitDone;
}

}  // namespace

void AddCategoriesCommand(CLI::App& app, CommandLine& line) {
  CLI::App* command = app.add_subcommand("categories", "List the categories of a type, or of all");
  auto type = std::make_shared<std::string>();
  command->add_option("type", *type, "Data type, such as contact")->type_name("TYPE");
  command->callback([&line, type] {
    line.chosen = [&line, type] {
      return WithReadingRun(line,
                            [&](EngineRun& run) { return Categories(run, line.console, *type); });
    };
  });
}

}  // namespace pw
