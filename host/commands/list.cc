#include <algorithm>
#include <memory>
#include <optional>
#include <ostream>
#include <string>
#include <unordered_map>
#include <utility>
#include <vector>

#include <CLI/CLI.hpp>

#include "host/catalogue.h"
#include "host/commands/commands.h"
#include "host/commands/profile_run.h"
#include "host/commands/record_choice.h"
#include "host/text_table.h"

// `pairwise list`: the records of a type, a line each.
namespace pw {
namespace {

struct ListOptions {
  std::string type;
  std::optional<std::string> category;
  bool table = false;
};

// The columns of all categories' fields, in the order in which they first occur. Where a category
// has several fields of a name, each has a column.
class Columns {
 public:
  // Where each of a category's fields stands.
  std::vector<std::size_t> Add(const std::vector<std::string>& fields) {
    std::vector<std::size_t> columns;
    std::unordered_map<std::string, std::size_t> seen;
    for (const std::string& name : fields) {
      std::vector<std::size_t>& ofName = places[name];
      const std::size_t before = seen[name]++;
      if (before == ofName.size()) {
        ofName.push_back(names.size());
        names.push_back(name);
      }
      columns.push_back(ofName[before]);
    }
    return columns;
  }

  const std::vector<std::string>& Names() const { return names; }

 private:
  std::vector<std::string> names;
  std::unordered_map<std::string, std::vector<std::size_t>> places;
};

TextTable RecordTable(const std::vector<CategoryRecords>& categories, bool withCategory) {
  Columns columns;
  std::vector<std::vector<std::size_t>> places;
  places.reserve(categories.size());
  for (const CategoryRecords& category : categories) {
    places.push_back(columns.Add(category.fieldNames));
  }
  TextTable table;
  if (withCategory) table.heading.emplace_back("Category");
  table.heading.emplace_back("ID");
  const std::size_t fixed = table.heading.size();
  table.heading.insert(table.heading.end(), columns.Names().begin(), columns.Names().end());
  for (std::size_t at = 0; at < categories.size(); ++at) {
    const CategoryRecords& category = categories[at];
    for (const Contact& contact : category.contacts) {
      std::vector<std::string> row(table.heading.size());
      if (withCategory) row[0] = category.name;
      row[fixed - 1] = contact.id;
      for (std::size_t i = 0; i < contact.fields.size(); ++i) {
        row[fixed + places[at][i]] = contact.fields[i].second;
      }
      table.rows.push_back(std::move(row));
    }
  }
  return table;
}

int List(EngineRun& run, const Console& console, const ListOptions& options) {
  const auto chosen = ChooseRecords(run, console, options.type, options.category);
  if (!chosen) return console.Fail(chosen.Why());
  const bool forPeople = console.outIsTerminal || options.table;
  // Programs find the same columns however many categories there are.
  const bool withCategory =
      HasCategories(options.type) && (!forPeople || chosen->categories.size() > 1);
  const TextTable table = RecordTable(chosen->categories, withCategory);
  console.out << (forPeople ? RenderForPeople(table, console.width) : RenderForPrograms(table));
  return chosen->anyLeftOut ? kExitSomeSkipped : kExitDone;
}

}  // namespace

void AddListCommand(CLI::App& app, CommandLine& line) {
  CLI::App* command = app.add_subcommand("list", "List the records of a type");
  command->footer(
      "On a terminal the list is a table cut to its width; elsewhere it is one line a record, "
      "tabs\n"
      "between the fields, a heading first.");
  auto options = std::make_shared<ListOptions>();
  command->add_option("type", options->type, "Data type, such as contact")
      ->required()
      ->type_name("TYPE");
  command->add_option("category", options->category, "Name or location of a category; else all")
      ->type_name("CATEGORY");
  command->add_flag("--table", options->table, "Make a table in any case");
  command->callback([&line, options] {
    line.chosen = [&line, options] {
      return WithReadingRun(line,
                            [&](EngineRun& run) { return List(run, line.console, *options); });
    };
  });
}

}  // namespace pw
