#include <algorithm>
#include <iterator>
#include <memory>
#include <optional>
#include <ostream>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include <CLI/CLI.hpp>

#include "framework/event_record.h"
#include "host/commands/commands.h"
#include "host/commands/profile_run.h"
#include "host/commands/record_choice.h"
#include "host/counted.h"
#include "host/drive_records.h"
#include "host/event_calendar.h"
#include "host/event_json.h"
#include "host/formats/contact_json.h"
#include "host/formats/csv.h"
#include "host/formats/vcard.h"
#include "host/memo_export.h"
#include "host/native_file.h"
#include "host/note_files.h"
#include "host/record_views.h"
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

// Rows of notes, each with its section.
std::vector<Contact> AllNotes(const ChosenRecords& chosen) {
  std::vector<Contact> all;
  for (const CategoryRecords& category : chosen.categories) {
    for (Contact note : category.contacts) {
      note.fields.insert(note.fields.begin(), {kCategoryColumn, category.name});
      all.push_back(std::move(note));
    }
  }
  return all;
}

// Records as the engine has them: an array, a record a line with its id before it, and where a type
// has several categories that.
std::string RenderTypedJson(const ChosenRecords& chosen, const RecordForm& form) {
  std::string text;
  for (const CategoryRecords& category : chosen.categories) {
    for (const TypedRecord& each : category.records) {
      PWRecord record = each.record;
      Json line{{"id", each.id}};
      if (form.type == kMemoType) line["category"] = category.name;
      line["record"] = form.toJson(record);
      text += (text.empty() ? "[\n  " : ",\n  ") + JsonLine(line);
    }
  }
  return text.empty() ? "[]\n" : text + "\n]\n";
}

// A file, and what of the records it can't hold, a line each.
struct Rendered {
  std::string text;
  std::vector<std::string> problems;
};

// Rows of events. What the columns for people can't tell of a series stands in one more.
std::vector<Contact> AllEvents(const ChosenRecords& chosen) {
  std::vector<Contact> all;
  for (const CategoryRecords& category : chosen.categories) {
    for (std::size_t i = 0; i < category.contacts.size(); ++i) {
      PWRecord record = category.records[i].record;
      const bool recurs = PWEventRecord(&record).Recurring();
      all.push_back(category.contacts[i]);
      all.back().fields.emplace_back(kSeriesColumn, recurs ? JsonLine(EventToJson(record)) : "");
    }
  }
  return all;
}

Rendered RenderJson(EngineRun& /*run*/, const ChosenRecords& chosen, const std::string& type) {
  if (type == kContactType) return {WriteContactsJson(AllContacts(chosen)), {}};
  return {RenderTypedJson(chosen, *FindRecordForm(type)), {}};
}

Rendered RenderCsv(EngineRun& /*run*/, const ChosenRecords& chosen, const std::string& type) {
  if (type == kMemoType) return {WriteCsv(AllNotes(chosen)), {}};
  return {WriteCsv(type == kCalendarType ? AllEvents(chosen) : AllContacts(chosen)), {}};
}

Rendered RenderVCards(EngineRun& /*run*/, const ChosenRecords& chosen,
                      const std::string& /*type*/) {
  std::string cards;
  for (const CategoryRecords& category : chosen.categories) {
    for (const Contact& contact : category.contacts) AppendVCard(cards, contact, category.location);
  }
  return {std::move(cards), {}};
}

Rendered RenderCalendar(EngineRun& run, const ChosenRecords& chosen, const std::string& type) {
  Clock& clock = run.Objects().clock;
  if (type == kTodoType) return {TodoCalendar(chosen.categories, clock), {}};
  EventCalendar calendar = MakeEventCalendar(chosen.categories, CityClocks::Of(run), clock);
  Rendered rendered{std::move(calendar.text), {}};
  if (calendar.undated > 0) {
    rendered.problems.push_back(Counted(calendar.undated, "series", "series") +
                                " without any date can't be in such a file");
  }
  return rendered;
}

std::vector<NoteFile> TextFiles(const ChosenRecords& chosen) {
  return MemosAsText(chosen.categories);
}

std::vector<NoteFile> RichTextFiles(const ChosenRecords& chosen) {
  return MemosAsRichText(chosen.categories);
}

bool HasNotes(const std::string& type) {
  return type == kMemoType;
}

bool HasCards(const std::string& type) {
  return type == kContactType;
}

bool HasCalendar(const std::string& type) {
  return type == kTodoType || type == kCalendarType;
}

struct ExportFormat {
  std::string_view name;
  bool (*takes)(const std::string& type);  // null where it takes all
  const char* types;                       // that it takes, for a person

  // One of them: all in one file, or a file for each record.
  Rendered (*render)(EngineRun& run, const ChosenRecords& chosen, const std::string& type);
  std::vector<NoteFile> (*files)(const ChosenRecords& chosen);
};
constexpr ExportFormat kFormats[] = {
    {"json", nullptr, "", RenderJson, nullptr},
    {"csv", nullptr, "", RenderCsv, nullptr},
    {"vcf", HasCards, "contact", RenderVCards, nullptr},
    {"ics", HasCalendar, "todo or calendar", RenderCalendar, nullptr},
    {"txt", HasNotes, "memo", nullptr, TextFiles},
    {"rtf", HasNotes, "memo", nullptr, RichTextFiles},
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
  if (format.takes != nullptr && !format.takes(options.type)) {
    return console.FailUsage(std::string("only records of type ") + format.types +
                             " can be exported as " + options.format);
  }
  const bool toStandardOutput = options.file == kStandardOutput;
  if (format.files != nullptr && toStandardOutput) {
    return console.FailUsage("each note becomes a file of its own; name a folder for them by -o");
  }
  const auto chosen = ChooseRecords(run, console, options.type, options.category);
  if (!chosen) return console.Fail(chosen.Why());
  if (format.files != nullptr) {
    const auto written = WriteNoteFiles(options.file, format.files(*chosen));
    if (!written) return console.Fail(written.Why());
    return chosen->anyLeftOut ? kExitSomeSkipped : kExitDone;
  }
  const Rendered rendered = format.render(run, *chosen, options.type);
  if (toStandardOutput) {
    console.out << rendered.text;
  } else {
    const auto written = WriteNativeFile(options.file, rendered.text);
    if (!written) return console.Fail(written.Why());
  }
  const bool anyLeftOut = console.Warn(rendered.problems) || chosen->anyLeftOut;
  return anyLeftOut ? kExitSomeSkipped : kExitDone;
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
  command
      ->add_option(
          "--format", options->format,
          "json, csv, vcf for contacts, ics for todo and calendar, or txt and rtf for memos")
      ->check(CLI::IsMember(FormatNames()))
      ->capture_default_str()
      ->type_name("FORMAT");
  command
      ->add_option("-o,--output", options->file,
                   "File to write; - is the standard output. Of txt and rtf a new folder, which "
                   "gets a file for each note")
      ->capture_default_str()
      ->type_name("FILE");
  command->callback([&line, options] {
    line.chosen = [&line, options] {
      return WithReadingRun(line,
                            [&](EngineRun& run) { return Export(run, line.console, *options); });
    };
  });
}

}  // namespace pw
