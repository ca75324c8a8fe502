#include <algorithm>
#include <memory>
#include <optional>
#include <ostream>
#include <string>
#include <string_view>
#include <utility>

#include <CLI/CLI.hpp>

#include "base/codepage.h"
#include "host/catalogue.h"
#include "host/commands/commands.h"
#include "host/commands/profile_run.h"
#include "host/record_reader.h"
#include "host/record_views.h"
#include "host/text_table.h"

// `pairwise show`: one record, all of it.
namespace pw {
namespace {

struct ShowOptions {
  std::string type;
  std::string id;
  std::optional<std::string> category;
};

struct Found {
  std::string category;
  Contact contact;
  bool hasStamp;  // whether records of the type tell when they were changed
};

// Each line of a value, control characters made harmless.
std::vector<std::string> Lines(std::string_view value) {
  std::vector<std::string> lines;
  for (;;) {
    const std::size_t end = value.find('\n');
    std::string_view line = value.substr(0, end);
    if (!line.empty() && line.back() == '\r') line.remove_suffix(1);
    lines.push_back(OneLine(line));
    if (end == std::string_view::npos) return lines;
    value.remove_prefix(end + 1);
  }
}

void PrintField(std::ostream& out, const std::string& label, std::string_view value,
                std::size_t labelWidth) {
  std::string shown = label;
  for (const std::string& line : Lines(value)) {
    const std::string text = Fitted(shown, labelWidth) + "  " + line;
    out << text.substr(0, text.find_last_not_of(' ') + 1) << "\n";
    shown.clear();
  }
}

void Print(std::ostream& out, const Found& found) {
  const Contact& contact = found.contact;
  std::size_t width = DisplayWidth(found.category.empty() ? "ID" : "Category");
  for (const auto& [name, value] : contact.fields) {
    if (!value.empty()) width = std::max(width, DisplayWidth(OneLine(name)));
  }
  if (!found.category.empty()) PrintField(out, "Category", found.category, width);
  PrintField(out, "ID", contact.id, width);
  if (found.hasStamp) {
    PrintField(out, "Changed", contact.stamp.empty() ? "unknown" : contact.stamp, width);
  }
  for (const auto& [name, value] : contact.fields) {
    if (!value.empty()) PrintField(out, OneLine(name), value, width);
  }
}

// The record of that id in one category; nothing if it isn't there. Tells what of the category's
// files can't be read, and whether there was anything.
Outcome<std::optional<Found>> FindIn(EngineRun& run, const Console& console,
                                     const PWSourceCategory& category, const ShowOptions& options,
                                     bool& anyLeftOut) {
  const auto opened = OpenForReading(run, options.type, category);
  if (!opened) return opened.Why();
  console.Warn(opened->warnings);
  if (console.Warn(opened->problems)) anyLeftOut = true;
  const auto id = Utf8ToCodePage(options.id);
  if (!id || opened->source->FindRecord(id->c_str()) != kResultOk) return std::optional<Found>();
  auto read = ReadRecord(*opened, options.type, FieldNames(run, options.type, category));
  if (!read && options.type == kTodoType) {
    return Failure{"record " + options.id + " is a recurring one, which can't be passed on"};
  }
  if (!read && options.type == kCalendarType) {
    return Failure{"record " + options.id + " is one that the engine has no words for"};
  }
  if (!read) {
    return Failure{run.NativePathOf(category.Location.Str()) + ": record " + options.id +
                   " can't be read"};
  }
  return std::optional<Found>(
      Found{CodePageToUtf8(category.Name.View()), std::move(read->shown), HasStamps(options.type)});
}

int Show(EngineRun& run, const Console& console, const ShowOptions& options) {
  const auto categories = ChooseCategories(run.Manager(), options.type, options.category);
  if (!categories) return console.Fail(categories.Why());
  std::optional<Found> found;
  bool anyLeftOut = false;
  for (std::uint32_t i = 0; i < categories->Count(); ++i) {
    auto here = FindIn(run, console, *categories->At(i), options, anyLeftOut);
    if (!here) {
      const int failed = console.Fail(here.Why());
      if (categories->Count() == 1) return failed;
      anyLeftOut = true;
      continue;
    }
    if (*here && found) {
      return console.Fail({"record " + options.id + " is in '" + found->category + "' and in '" +
                           (*here)->category + "'; say which by --category"});
    }
    if (*here) found = std::move(*here);
  }
  if (!found) return console.Fail({"there is no " + options.type + " record " + options.id});
  Print(console.out, *found);
  return anyLeftOut ? kExitSomeSkipped : kExitDone;
}

}  // namespace

void AddShowCommand(CLI::App& app, CommandLine& line) {
  CLI::App* command = app.add_subcommand("show", "Show one record");
  auto options = std::make_shared<ShowOptions>();
  command->add_option("type", options->type, "Data type, such as contact")
      ->required()
      ->type_name("TYPE");
  command->add_option("id", options->id, "The record's id, as `pairwise list` gives it")
      ->required()
      ->type_name("ID");
  command
      ->add_option("--category", options->category, "Name or location of the category to look in")
      ->type_name("CATEGORY");
  command->callback([&line, options] {
    line.chosen = [&line, options] {
      return WithReadingRun(line,
                            [&](EngineRun& run) { return Show(run, line.console, *options); });
    };
  });
}

}  // namespace pw
