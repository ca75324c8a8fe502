#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <optional>
#include <ostream>
#include <string>
#include <utility>
#include <vector>

#include <CLI/CLI.hpp>

#include "base/codepage.h"
#include "base/text.h"
#include "cardfile/format.h"
#include "host/commands/commands.h"
#include "host/commands/profile_run.h"
#include "host/new_calendar.h"
#include "host/record_reader.h"
#include "platform/platform.h"

// `pairwise new`: cardfiles, binders and calendars made.
namespace pw {
namespace {

struct NewOptions {
  std::string type;
  std::string name;
  std::optional<std::string> templateName;
  std::vector<std::string> fields;
};

// The list shows the first one in brackets, as the default.
bool IsTemplate(const std::string& entry, const std::string& name) {
  return EqualIgnoringCase(entry, name) || EqualIgnoringCase(entry, "[" + name + " default]");
}

// The place of the template that a person wants among those that there are; what stands in the way
// is told.
std::optional<std::size_t> ChooseTemplate(const Console& console, const NewOptions& options,
                                          const std::vector<std::string>& entries) {
  std::string names;
  for (std::size_t i = 0; i < entries.size(); ++i) {
    names += "  " + std::to_string(i + 1) + "  " + CodePageToUtf8(entries[i]) + "\n";
  }
  if (options.templateName) {
    const std::string name = Utf8ToCodePageLossy(*options.templateName);
    const auto found = std::find_if(entries.begin(), entries.end(), [&](const std::string& entry) {
      return IsTemplate(entry, name);
    });
    if (found != entries.end()) return static_cast<std::size_t>(found - entries.begin());
    console.messages << "there is no template '" << *options.templateName << "'; there is\n"
                     << names;
    return std::nullopt;
  }
  if (!console.isAsking) {
    console.messages << "which template? Give one as --template NAME; there is\n" << names;
    return std::nullopt;
  }
  console.messages << names;
  const std::string answer = console
                                 .Ask("Which template (1 to " + std::to_string(entries.size()) +
                                      ", Enter for the first)? ")
                                 .value_or("0");
  const std::int32_t number = answer.empty() ? 1 : ParseLong(answer);
  return number < 1 ? std::nullopt : std::optional<std::size_t>(number - 1);
}

std::string LocationOf(EngineRun& run, const std::string& name) {
  return run.Objects().config.String(PWConfig::kDataFolder).Str() + "\\" + name;
}

int TellMade(EngineRun& run, const Console& console, const std::string& location) {
  console.out << run.NativePathOf(location) << " is made\n";
  return kExitDone;
}

// As an engine that brings data in makes it: with fields of its own.
int MakeCardfileOfFields(EngineRun& run, const Console& console, const NewOptions& options,
                         const std::string& location) {
  PWStringVector names;
  for (const std::string& field : options.fields) names.AppendText(Utf8ToCodePageLossy(field));
  PWImportManager& manager = run.Objects().importManager;
  manager.SetImportPath(location.c_str());
  manager.PrepareImport(kContactType, names);
  return CurrentPlatform().files->Exists(location)
             ? TellMade(run, console, location)
             : console.Fail({run.NativePathOf(location) + ": could not be made"});
}

int MakeCardfileOfTemplate(EngineRun& run, const Console& console, const NewOptions& options,
                           const std::string& name) {
  bool areTemplates = false;
  run.Objects().dialogs.ChooseFromLists([&](const std::vector<std::string>& entries) {
    areTemplates = true;
    return ChooseTemplate(console, options, entries);
  });
  PWString location;
  const PWRESULT result = run.Manager().NewCategory(name.c_str(), kContactType, &location);
  run.Objects().dialogs.ChooseFromLists({});
  if (result == kResultOk) return TellMade(run, console, location.Str());
  const std::string file = run.NativePathOf(location.Str());
  if (areTemplates) return console.Fail({file + ": not made"});
  const std::string folder = run.Objects().config.String(PWConfig::kInstallFolder).Str();
  return console.Fail({file + ": not made, as there are no templates in '" +
                       CodePageToUtf8(folder) +
                       "\\Data\\crdstyle.dat', whose folder is entry 3 of the profile's [config]; "
                       "--field names fields without one"});
}

int MakeCardfile(EngineRun& run, const Console& console, const NewOptions& options,
                 const std::string& name) {
  const std::string location = LocationOf(run, name) + std::string(cardfile::kExtension);
  if (CurrentPlatform().files->Exists(location)) {
    return console.Fail({run.NativePathOf(location) + ": is there already"});
  }
  return options.fields.empty() ? MakeCardfileOfTemplate(run, console, options, name)
                                : MakeCardfileOfFields(run, console, options, location);
}

int MakeSection(EngineRun& run, const Console& console, const std::string& name) {
  PWString location;
  if (run.Manager().NewCategory(name.c_str(), kMemoType, &location) == kResultOk) {
    return TellMade(run, console, location.Str());
  }
  return console.Fail(
      {run.NativePathOf(location.Str()) + ": is there already, or could not be made"});
}

// What there is of that name would be emptied by the module.
int MakeCalendarSet(EngineRun& run, const Console& console, const NewOptions& options,
                    const std::string& name) {
  const std::string location = LocationOf(run, name);
  const std::vector<std::string> before = CalendarFilesAt(run, location);
  if (!before.empty()) return console.Fail({before.front() + ": is there already"});
  if (options.type == kCalendarType) {
    const auto made = MakeCalendar(run, location);
    if (!made) return console.Fail(made.Why());
  } else {
    PWString where;
    run.Manager().NewCategory(name.c_str(), kTodoType, &where);
  }
  const std::vector<std::string> made = CalendarFilesAt(run, location);
  if (made.empty()) return console.Fail({run.NativePathOf(location) + ": could not be made"});
  for (const std::string& file : made) console.out << file << " is made\n";
  console.messages << "`pairwise options` has the profile use it\n";
  return kExitDone;
}

int Make(EngineRun& run, const Console& console, const NewOptions& options) {
  const std::string name = Utf8ToCodePageLossy(options.name);
  if (options.type == kContactType) return MakeCardfile(run, console, options, name);
  if (options.type == kMemoType) return MakeSection(run, console, name);
  return MakeCalendarSet(run, console, options, name);
}

// Why the command line can't be meant; empty if it can.
std::string ComplaintAbout(const NewOptions& options) {
  const std::string& type = options.type;
  if (type == "timezone") return "the clocks are always eight; none can be made";
  if (type != kContactType && (options.templateName || !options.fields.empty())) {
    return "only a cardfile has a template or fields of its own";
  }
  if (options.name.find_first_of("/\\?*|:<>\"") != std::string::npos || options.name.empty()) {
    return "a name holds none of / \\ ? * | : < > \", and isn't empty";
  }
  return "";
}

}  // namespace

void AddNewCommand(CLI::App& app, CommandLine& line) {
  CLI::App* command = app.add_subcommand("new", "Make a cardfile, a binder, or a calendar");
  command->footer(
      "Of type contact a cardfile, of memo a binder with a section of that name, of calendar the "
      "files of a calendar, of todo those of a to-do list without one.");
  auto options = std::make_shared<NewOptions>();
  command->add_option("type", options->type, "Data type, such as contact")
      ->required()
      ->check(CLI::IsMember({"contact", "calendar", "todo", "memo", "timezone"}))
      ->type_name("TYPE");
  command->add_option("name", options->name, "Its name")->required()->type_name("NAME");
  CLI::Option* ofTemplate =
      command
          ->add_option("--template", options->templateName,
                       "Template of a cardfile; else you are asked, at a terminal")
          ->type_name("TEMPLATE");
  command
      ->add_option("--field", options->fields,
                   "A field of a cardfile without a template; repeat it")
      ->type_name("FIELD")
      ->allow_extra_args(false)
      ->excludes(ofTemplate);
  command->callback([&line, options] {
    line.chosen = [&line, options] {
      const std::string complaint = ComplaintAbout(*options);
      if (!complaint.empty()) return line.console.FailUsage(complaint);
      return WithWritingRun(line, false,
                            [&](EngineRun& run) { return Make(run, line.console, *options); });
    };
  });
}

}  // namespace pw
