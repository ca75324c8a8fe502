#include <algorithm>
#include <cstddef>
#include <memory>
#include <optional>
#include <ostream>
#include <string>
#include <utility>
#include <vector>

#include <CLI/CLI.hpp>

#include "base/codepage.h"
#include "cardfile/format.h"
#include "host/calendar_guard.h"
#include "host/calendar_stems.h"
#include "host/card_template.h"
#include "host/commands/commands.h"
#include "host/commands/profile_run.h"
#include "host/counted.h"
#include "host/native_file.h"
#include "host/new_calendar.h"
#include "host/new_name.h"
#include "host/new_section.h"
#include "host/record_reader.h"
#include "memo/format.h"
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
  CardTemplateChoice ofTemplate;  // of a cardfile without fields; chosen before the run that writes
};

std::string LocationOf(EngineRun& run, const std::string& name) {
  return run.Objects().config.String(PWConfig::kDataFolder).Str() + "\\" + name;
}

std::string CardfileOf(EngineRun& run, const NewThing& wanted) {
  return LocationOf(run, wanted.name) + std::string(cardfile::kExtension);
}

// Of the files that it will have the one with the longest name.
std::string LongestFileOf(EngineRun& run, const NewThing& wanted) {
  if (wanted.type == kContactType) return CardfileOf(run, wanted);
  const std::string location = LocationOf(run, wanted.name);
  return location + (wanted.type == kMemoType ? memo::kHeaderFile : std::string(kEventFile));
}

// What there is of that name the module would empty, or add nothing to.
std::optional<Failure> WhatIsThere(EngineRun& run, const NewThing& wanted) {
  if (wanted.type == kMemoType) return WhatIsInTheWayOfSection(run, wanted.name);
  if (wanted.type == kContactType) {
    const std::string file = CardfileOf(run, wanted);
    if (!CurrentPlatform().files->Exists(file)) return std::nullopt;
    return Failure{run.NativePathOf(file) + ": is there already"};
  }
  const std::vector<std::string> files = CalendarFilesAt(run, LocationOf(run, wanted.name));
  if (files.empty()) return std::nullopt;
  return Failure{files.front() + ": is there already"};
}

// The exit code if it can't be made, or nobody says how. Nothing is made or changed by the look.
std::optional<int> LookBeforehand(EngineRun& run, const Console& console, NewThing& wanted) {
  if (const auto there = WhatIsThere(run, wanted)) return console.Fail(*there);
  const std::string file = run.NativePathOf(LongestFileOf(run, wanted));
  if (const auto why = WhyNotMakeable(file)) return console.Fail(*why);
  if (wanted.type != kContactType || !wanted.fields.empty()) return std::nullopt;
  return ChooseCardTemplate(run, console, wanted.templateName, wanted.ofTemplate);
}

int FailToMake(EngineRun& run, const Console& console, const std::string& location) {
  return console.Fail({run.NativePathOf(location) + ": could not be made"});
}

int TellMade(EngineRun& run, const Console& console, const std::string& location) {
  console.out << run.NativePathOf(location) << " is made\n";
  return kExitDone;
}

// A cardfile has no room for any number of names, and the module leaves out what is beyond.
int TellFieldsLeftOut(EngineRun& run, const Console& console,
                      const std::vector<std::string>& fields, const std::string& location) {
  PWSourceCategory category;
  category.Location = location.c_str();
  const std::vector<std::string> made = FieldNames(run, kContactType, category);
  const auto isMade = [](const std::string& asked, const std::string& name) {
    return CodePageToUtf8(asked) == name;
  };
  const auto left =
      std::mismatch(fields.begin(), fields.end(), made.begin(), made.end(), isMade).first;
  if (left != fields.end()) {
    const auto count = static_cast<std::size_t>(fields.end() - left);
    console.Fail({run.NativePathOf(location) + ": the last " +
                  Counted(count, "field was", "fields were") +
                  " left out, as all names together have room for 65,535 bytes"});
    return kExitSomeSkipped;
  }
  const auto tooMuch = WhyNoRoomFor(fields);
  if (!tooMuch) return kExitDone;
  console.Fail(
      {run.NativePathOf(location) + ": " + tooMuch->message + "; the organiser may not read more"});
  return kExitSomeSkipped;
}

// As an engine that brings data in makes it: with fields of its own.
int MakeCardfileOfFields(EngineRun& run, const Console& console, const NewThing& wanted) {
  const std::string location = CardfileOf(run, wanted);
  PWStringVector names;
  for (const std::string& field : wanted.fields) names.AppendText(field);
  PWImportManager& manager = run.Objects().importManager;
  manager.SetImportPath(location.c_str());
  manager.PrepareImport(kContactType, names);
  const bool isMade = CurrentPlatform().files->Exists(location);
  return isMade ? TellMade(run, console, location) : FailToMake(run, console, location);
}

int MakeCardfileOfTemplate(EngineRun& run, const Console& console, const NewThing& wanted) {
  const std::string location = CardfileOf(run, wanted);
  const CardTemplateChoice& chosen = wanted.ofTemplate;
  run.Objects().dialogs.ChooseFromLists([&](const auto& /*entries*/) { return chosen.place; });
  const PWRESULT result = run.Manager().NewCategory(wanted.name.c_str(), kContactType, nullptr);
  run.Objects().dialogs.ChooseFromLists({});
  if (result != kResultOk) return FailToMake(run, console, location);
  TellMade(run, console, location);
  return TellFieldsLeftOut(run, console, chosen.fields, location);
}

int MakeCalendarSet(EngineRun& run, const Console& console, const NewThing& wanted) {
  const std::string location = LocationOf(run, wanted.name);
  if (wanted.type == kCalendarType) {
    const auto made = MakeCalendar(run, location);
    if (!made) return console.Fail(made.Why());
  } else {
    run.Manager().NewCategory(wanted.name.c_str(), kTodoType, nullptr);
  }
  const std::vector<std::string> made = CalendarFilesAt(run, location);
  if (made.empty()) return FailToMake(run, console, LongestFileOf(run, wanted));
  for (const std::string& file : made) console.out << file << " is made\n";
  console.messages << "`pairwise options` has the profile use it\n";
  return kExitDone;
}

int MakeMemoSection(EngineRun& run, const Console& console, const NewThing& wanted) {
  const auto made = MakeSection(run, wanted.name);
  if (!made) return console.Fail(made.Why());
  console.out << *made << " is made\n";
  return kExitDone;
}

int Make(EngineRun& run, const Console& console, const NewThing& wanted) {
  // The look beforehand was at copies of the files.
  if (const auto there = WhatIsThere(run, wanted)) return console.Fail(*there);
  if (wanted.type == kMemoType) return MakeMemoSection(run, console, wanted);
  if (wanted.type != kContactType) return MakeCalendarSet(run, console, wanted);
  return wanted.fields.empty() ? MakeCardfileOfTemplate(run, console, wanted)
                               : MakeCardfileOfFields(run, console, wanted);
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
  auto fields = NewFieldNames(options.fields);
  if (!fields) return fields.Why();
  return NewThing{type, *name, options.templateName, std::move(*fields), {}};
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
      auto wanted = ToMake(*options);
      if (!wanted) return line.console.FailUsage(wanted.Why().message);
      const auto make = [&](EngineRun& run) {
        run.Objects().setWindowChain(true);
        return Make(run, line.console, *wanted);
      };
      return WithWritingRun(line, !AnyNeedsCalendars({wanted->type}), make, [&](EngineRun& run) {
        return LookBeforehand(run, line.console, *wanted);
      });
    };
  });
}

}  // namespace pw
