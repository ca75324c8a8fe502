#include <algorithm>
#include <iterator>
#include <memory>
#include <optional>
#include <ostream>
#include <string>
#include <string_view>
#include <vector>

#include <CLI/CLI.hpp>

#include "host/commands/commands.h"
#include "host/commands/profile_run.h"
#include "host/commands/record_choice.h"
#include "host/drive_records.h"
#include "host/formats/contact_json.h"
#include "host/formats/csv.h"
#include "host/formats/vcard.h"
#include "host/native_file.h"
#include "host/todo_calendar.h"

// `pairwise export`: the records of a type in a form that other programs read.
namespace pw {
namespace {

constexpr const char* kStandardOutput = "-";

struct ExportOptions {
  std::string type;
  std::optional<std::string> category;
  std::string format = "json";
  std::string file = kStandardOutput;
};

std::vector<Contact> AllContacts(const ChosenRecords& chosen) {
  std::vector<Contact> all;
  for (const CategoryRecords& category : chosen.categories) {
    all.insert(all.end(), category.contacts.begin(), category.contacts.end());
  }
  return all;
}

// Records as the engine has them: an array, a record a line with its id before it.
std::string RenderTypedJson(const ChosenRecords& chosen, const RecordForm& form) {
  std::string text;
  for (const CategoryRecords& category : chosen.categories) {
    for (const TypedRecord& each : category.records) {
      PWRecord record = each.record;
      const Json line{{"id", each.id}, {"record", form.toJson(record)}};
      text += (text.empty() ? "[\n  " : ",\n  ") + JsonLine(line);
    }
  }
  return text.empty() ? "[]\n" : text + "\n]\n";
}

std::string RenderJson(EngineRun& /*run*/, const ChosenRecords& chosen, const std::string& type) {
  if (type == kContactType) return WriteContactsJson(AllContacts(chosen));
  return RenderTypedJson(chosen, *FindRecordForm(type));
}

std::string RenderCsv(EngineRun& /*run*/, const ChosenRecords& chosen,
                      const std::string& /*type*/) {
  return WriteCsv(AllContacts(chosen));
}

std::string RenderVCards(EngineRun& /*run*/, const ChosenRecords& chosen,
                         const std::string& /*type*/) {
  std::string cards;
  for (const CategoryRecords& category : chosen.categories) {
    for (const Contact& contact : category.contacts) AppendVCard(cards, contact, category.location);
  }
  return cards;
}

std::string RenderCalendar(EngineRun& run, const ChosenRecords& chosen,
                           const std::string& /*type*/) {
  return TodoCalendar(chosen.categories, run.Objects().clock);
}

struct ExportFormat {
  std::string_view name;
  std::string_view onlyType;  // empty where it takes all
  std::string (*render)(EngineRun& run, const ChosenRecords& chosen, const std::string& type);
};
constexpr ExportFormat kFormats[] = {
    {"json", "", RenderJson},
    {"csv", "", RenderCsv},
    {"vcf", kContactType, RenderVCards},
    {"ics", kTodoType, RenderCalendar},
};

std::vector<std::string> FormatNames() {
  std::vector<std::string> names;
  for (const ExportFormat& format : kFormats) names.emplace_back(format.name);
  return names;
}

const ExportFormat& FormatOf(const std::string& name) {
  return *std::find_if(std::begin(kFormats), std::end(kFormats),
                       [&](const ExportFormat& format) { return format.name == name; });
}

int Export(EngineRun& run, const Console& console, const ExportOptions& options) {
  const ExportFormat& format = FormatOf(options.format);
  if (!format.onlyType.empty() && options.type != format.onlyType) {
    return console.FailUsage("only records of type " + std::string(format.onlyType) +
                             " can be exported as " + options.format);
  }
  const auto chosen = ChooseRecords(run, console, options.type, options.category);
  if (!chosen) return console.Fail(chosen.Why());
  const std::string text = format.render(run, *chosen, options.type);
  if (options.file == kStandardOutput) {
    console.out << text;
  } else {
    const auto written = WriteNativeFile(options.file, text);
    if (!written) return console.Fail(written.Why());
  }
  return chosen->anyLeftOut ? kExitSomeSkipped : kExitDone;
}

}  // namespace

void AddExportCommand(CLI::App& app, CommandLine& line) {
  CLI::App* command =
      app.add_subcommand("export", "Write the records of a type for other programs");
  auto options = std::make_shared<ExportOptions>();
  command->add_option("type", options->type, "Data type, such as contact")
      ->required()
      ->type_name("TYPE");
  command->add_option("category", options->category, "Name or location of a category; else all")
      ->type_name("CATEGORY");
  command->add_option("--format", options->format, "json, csv, vcf for contacts, or ics for todo")
      ->check(CLI::IsMember(FormatNames()))
      ->capture_default_str()
      ->type_name("FORMAT");
  command->add_option("-o,--output", options->file, "File to write; - is the standard output")
      ->capture_default_str()
      ->type_name("FILE");
  command->callback([&line, options] {
    line.chosen = [&line, options] {
      return WithRun(line, RunMode::kReading,
                     [&](EngineRun& run) { return Export(run, line.console, *options); });
    };
  });
}

}  // namespace pw
