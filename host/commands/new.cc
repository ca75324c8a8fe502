#include <algorithm>
#include <charconv>
#include <cstddef>
#include <memory>
#include <optional>
#include <ostream>
#include <string>
#include <string_view>
#include <system_error>
#include <utility>
#include <vector>

#include <CLI/CLI.hpp>

#include "base/codepage.h"
#include "base/text.h"
#include "cardfile/format.h"
#include "host/calendar_guard.h"
#include "host/commands/commands.h"
#include "host/commands/profile_run.h"
#include "host/counted.h"
#include "host/new_calendar.h"
#include "host/new_name.h"
#include "host/new_section.h"
#include "host/record_reader.h"
#include "host/text_table.h"
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

// What a person asks for, once it is known to be possible. Names are in the organiser's code page.
struct NewThing {
  std::string type;
  std::string name;
  std::optional<std::string> templateName;  // as it was given
  std::vector<std::string> fields;
};

// The list shows the first one in brackets, as the default.
std::vector<std::string> NamesOf(std::vector<std::string> entries) {
  constexpr std::string_view kEnd = " default]";
  if (!entries.empty() && entries[0].starts_with('[') && entries[0].ends_with(kEnd)) {
    entries[0] = entries[0].substr(1, entries[0].size() - 1 - kEnd.size());
  }
  return entries;
}

std::string InQuotes(const std::vector<std::string>& names) {
  std::string text;
  for (const std::string& name : names) {
    text += (text.empty() ? "'" : ", '") + OneLine(CodePageToUtf8(name)) + "'";
  }
  return text;
}

// A choice among the templates that there are, and the exit code where none was made; that was told
// then.
class TemplateChoice {
 public:
  TemplateChoice(const Console& console, std::optional<std::string> wanted)
      : console(console), wanted(std::move(wanted)) {}

  std::optional<std::size_t> Among(const std::vector<std::string>& entries) {
    const std::vector<std::string> names = NamesOf(entries);
    if (wanted) return Find(names);
    if (console.isAsking) return Ask(names);
    code = console.FailUsage("which template? Give one as --template NAME; there is " +
                             InQuotes(names));
    return std::nullopt;
  }

  std::optional<int> Code() const { return code; }

 private:
  std::optional<std::size_t> Find(const std::vector<std::string>& names) {
    const auto name = Utf8ToCodePage(*wanted);
    const auto found = std::find_if(names.begin(), names.end(), [&](const std::string& each) {
      return name && EqualIgnoringCase(each, *name);
    });
    if (found != names.end()) return static_cast<std::size_t>(found - names.begin());
    code = console.Fail({"there is no template '" + *wanted + "'; there is " + InQuotes(names)});
    return std::nullopt;
  }

  std::optional<std::size_t> Ask(const std::vector<std::string>& names) {
    for (std::size_t i = 0; i < names.size(); ++i) {
      console.messages << "  " << i + 1 << "  " << OneLine(CodePageToUtf8(names[i])) << "\n";
    }
    const std::string most = std::to_string(names.size());
    const auto answer = console.Ask("Which template (1 to " + most + ", Enter for the first)? ");
    if (answer && answer->empty()) return 0;
    std::size_t number = 0;
    const std::string text = answer.value_or("");
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), number);
    const bool isNumber = error == std::errc() && end == text.data() + text.size();
    if (isNumber && number >= 1 && number <= names.size()) return number - 1;
    code = console.Fail({"'" + OneLine(text) + "' is none of 1 to " + most + "; nothing was made"});
    return std::nullopt;
  }

  const Console& console;
  std::optional<std::string> wanted;
  std::optional<int> code;
};

std::string LocationOf(EngineRun& run, const std::string& name) {
  return run.Objects().config.String(PWConfig::kDataFolder).Str() + "\\" + name;
}

int TellMade(EngineRun& run, const Console& console, const std::string& location) {
  console.out << run.NativePathOf(location) << " is made\n";
  return kExitDone;
}

// A cardfile has no room for any number of names, and the module leaves out what is beyond.
int TellFieldsLeftOut(EngineRun& run, const Console& console, const NewThing& wanted,
                      const std::string& location) {
  PWSourceCategory category;
  category.Location = location.c_str();
  const std::vector<std::string> made = FieldNames(run, kContactType, category);
  const auto isMade = [](const std::string& asked, const std::string& name) {
    return CodePageToUtf8(asked) == name;
  };
  const auto left =
      std::mismatch(wanted.fields.begin(), wanted.fields.end(), made.begin(), made.end(), isMade)
          .first;
  if (left == wanted.fields.end()) return kExitDone;
  const auto count = static_cast<std::size_t>(wanted.fields.end() - left);
  console.Fail({run.NativePathOf(location) + ": the last " +
                Counted(count, "field was", "fields were") +
                " left out, as all names together have room for 65,535 bytes"});
  return kExitSomeSkipped;
}

// As an engine that brings data in makes it: with fields of its own.
int MakeCardfileOfFields(EngineRun& run, const Console& console, const NewThing& wanted,
                         const std::string& location) {
  PWStringVector names;
  for (const std::string& field : wanted.fields) names.AppendText(field);
  PWImportManager& manager = run.Objects().importManager;
  manager.SetImportPath(location.c_str());
  manager.PrepareImport(kContactType, names);
  if (!CurrentPlatform().files->Exists(location)) {
    return console.Fail({run.NativePathOf(location) + ": could not be made"});
  }
  TellMade(run, console, location);
  return TellFieldsLeftOut(run, console, wanted, location);
}

int MakeCardfileOfTemplate(EngineRun& run, const Console& console, const NewThing& wanted) {
  TemplateChoice choice(console, wanted.templateName);
  bool areTemplates = false;
  run.Objects().dialogs.ChooseFromLists([&](const std::vector<std::string>& entries) {
    areTemplates = true;
    return choice.Among(entries);
  });
  PWString location;
  const PWRESULT result = run.Manager().NewCategory(wanted.name.c_str(), kContactType, &location);
  run.Objects().dialogs.ChooseFromLists({});
  if (result == kResultOk) return TellMade(run, console, location.Str());
  if (choice.Code()) return *choice.Code();
  const std::string file = run.NativePathOf(location.Str());
  if (areTemplates) return console.Fail({file + ": not made"});
  const std::string folder = run.Objects().config.String(PWConfig::kInstallFolder).Str();
  return console.Fail({file + ": not made, as there are no templates in '" +
                       CodePageToUtf8(folder) +
                       "\\Data\\crdstyle.dat', whose folder is entry 3 of the profile's [config]; "
                       "--field names fields without one"});
}

int MakeCardfile(EngineRun& run, const Console& console, const NewThing& wanted) {
  const std::string location = LocationOf(run, wanted.name) + std::string(cardfile::kExtension);
  if (CurrentPlatform().files->Exists(location)) {
    return console.Fail({run.NativePathOf(location) + ": is there already"});
  }
  return wanted.fields.empty() ? MakeCardfileOfTemplate(run, console, wanted)
                               : MakeCardfileOfFields(run, console, wanted, location);
}

// What there is of that name would be emptied by the module.
int MakeCalendarSet(EngineRun& run, const Console& console, const NewThing& wanted) {
  const std::string location = LocationOf(run, wanted.name);
  const std::vector<std::string> before = CalendarFilesAt(run, location);
  if (!before.empty()) return console.Fail({before.front() + ": is there already"});
  if (wanted.type == kCalendarType) {
    const auto made = MakeCalendar(run, location);
    if (!made) return console.Fail(made.Why());
  } else {
    PWString where;
    run.Manager().NewCategory(wanted.name.c_str(), kTodoType, &where);
  }
  const std::vector<std::string> made = CalendarFilesAt(run, location);
  if (made.empty()) return console.Fail({run.NativePathOf(location) + ": could not be made"});
  for (const std::string& file : made) console.out << file << " is made\n";
  console.messages << "`pairwise options` has the profile use it\n";
  return kExitDone;
}

int Make(EngineRun& run, const Console& console, const NewThing& wanted) {
  if (wanted.type == kContactType) return MakeCardfile(run, console, wanted);
  if (wanted.type != kMemoType) return MakeCalendarSet(run, console, wanted);
  const auto location = MakeSection(run, wanted.name);
  return location ? TellMade(run, console, *location) : console.Fail(location.Why());
}

// A failure says why the command line can't be meant.
Outcome<NewThing> ToMake(const NewOptions& options) {
  const std::string& type = options.type;
  if (type == "timezone") return Failure{"the clocks are always eight; none can be made"};
  if (type != kContactType && (options.templateName || !options.fields.empty())) {
    return Failure{"only a cardfile has a template or fields of its own"};
  }
  const auto name = type == kMemoType ? NewSectionName(options.name) : NewFileName(options.name);
  if (!name) return name.Why();
  NewThing wanted{type, *name, options.templateName, {}};
  for (const std::string& given : options.fields) {
    const auto field = NewFieldName(given);
    if (!field) return field.Why();
    wanted.fields.push_back(*field);
  }
  return wanted;
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
      const auto wanted = ToMake(*options);
      if (!wanted) return line.console.FailUsage(wanted.Why().message);
      return WithWritingRun(line, !AnyNeedsCalendars({wanted->type}), [&](EngineRun& run) {
        run.Objects().setWindowChain(true);
        return Make(run, line.console, *wanted);
      });
    };
  });
}

}  // namespace pw
