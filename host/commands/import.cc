#include <algorithm>
#include <iterator>
#include <memory>
#include <optional>
#include <ostream>
#include <string>
#include <string_view>
#include <vector>

#include <CLI/CLI.hpp>

#include "base/codepage.h"
#include "base/text.h"
#include "host/calendar_guard.h"
#include "host/catalogue.h"
#include "host/commands/commands.h"
#include "host/commands/profile_run.h"
#include "host/counted.h"
#include "host/import/calendar_records.h"
#include "host/import/contact_records.h"
#include "host/import/importer.h"
#include "host/import/typed_csv.h"
#include "host/import/typed_json.h"
#include "host/native_file.h"

// `pairwise import`: records brought into the organiser's files.
namespace pw {
namespace {

constexpr std::uintmax_t kLargestImport = 256 << 20;

struct ImportOptions {
  std::string type;
  std::string file;
  std::optional<std::string> category;
  std::string format;  // empty: by the file's name
  bool update = false;
};

constexpr const char* kFormats[] = {"json", "csv", "vcf", "ics"};

// The format that was named, or that the file's name ends in; empty where it is neither.
std::string FormatOf(const ImportOptions& options) {
  if (!options.format.empty()) return options.format;
  for (const char* format : kFormats) {
    if (EndsWithIgnoringCase(options.file, std::string(".") + format)) return format;
  }
  return {};
}

// Why the command line can't be meant; empty if it can.
std::string ComplaintAbout(const ImportOptions& options) {
  const std::string format = FormatOf(options);
  if (format.empty()) return "which format has " + options.file + "? Give it as --format FORMAT";
  if (format == "vcf" && options.type != kContactType) return "a vCard file holds contacts only";
  const bool hasCalendar = options.type == kCalendarType || options.type == kTodoType;
  if (format == "ics" && !hasCalendar) return "an iCalendar file holds calendar and todo only";
  return {};
}

Incoming Read(EngineRun& run, const ImportOptions& options, std::string_view text,
              const PWSourceCategoryVector& categories) {
  const std::string format = FormatOf(options);
  if (options.type == kContactType) {
    const ContactFormat form = format == "json"  ? ContactFormat::kJson
                               : format == "csv" ? ContactFormat::kCsv
                                                 : ContactFormat::kVCard;
    return ReadContacts(text, form, FieldNames(run, kContactType, *categories.At(0)));
  }
  if (format == "json") return ReadTypedJson(text, *FindRecordForm(options.type));
  const CityClocks cities = options.type == kCalendarType ? CityClocks::Of(run) : CityClocks();
  if (format == "csv") return ReadTypedCsv(text, options.type, cities);
  const CalendarFile file = ReadCalendarFile(text);
  return options.type == kTodoType ? TodosOfCalendar(file)
                                   : EventsOfCalendar(file, cities, options.update);
}

// Where each record goes: into the category named on the command line, or else into the one that it
// was in, or the only one that there is. Those that have none are told and left out.
struct Part {
  const PWSourceCategory* category = nullptr;
  std::vector<IncomingRecord> records;
};

const PWSourceCategory* CategoryOf(const IncomingRecord& record,
                                   const PWSourceCategoryVector& categories) {
  if (categories.Count() == 1) return categories.At(0);
  const std::string name = Utf8ToCodePageLossy(record.category);
  for (std::uint32_t i = 0; i < categories.Count(); ++i) {
    if (categories.At(i)->Name().View() == name) return categories.At(i);
  }
  return nullptr;
}

std::vector<Part> PartsOf(Incoming& incoming, const PWSourceCategoryVector& categories) {
  std::vector<Part> parts;
  for (IncomingRecord& record : incoming.records) {
    const PWSourceCategory* category = CategoryOf(record, categories);
    if (category == nullptr) {
      incoming.problems.push_back(record.where + ": there is no category '" + record.category +
                                  "' for it; name one on the command line");
      continue;
    }
    auto part = std::find_if(parts.begin(), parts.end(),
                             [&](const Part& each) { return each.category == category; });
    if (part == parts.end()) part = parts.insert(parts.end(), {category, {}});
    part->records.push_back(std::move(record));
  }
  return parts;
}

int Summarise(const Console& console, const Importer::Counts& counts, bool anyProblem) {
  console.out << Counted(counts.added, "record", "records") << " added";
  if (counts.updated > 0) console.out << ", " << counts.updated << " updated";
  if (counts.changed > 0) console.out << ", " << counts.changed << " of them changed";
  if (counts.refused > 0) console.out << ", " << counts.refused << " refused";
  console.out << "\n";
  return anyProblem || counts.refused > 0 ? kExitSomeSkipped : kExitDone;
}

int Import(EngineRun& run, const Console& console, const ImportOptions& options,
           std::string_view text) {
  const auto categories = ChooseCategories(run.Manager(), options.type, options.category);
  if (!categories) return console.Fail(categories.Why());
  if (categories->Count() == 0) {
    return console.Fail(
        {"there is no " + options.type + " category to import into; `pairwise new` makes one"});
  }
  if (options.type == kContactType && categories->Count() > 1) {
    return console.FailUsage("which cardfile? There are several (`pairwise categories contact`)");
  }
  Incoming incoming = Read(run, options, text, *categories);
  std::vector<Part> parts = PartsOf(incoming, *categories);
  bool anyProblem = console.Warn(incoming.problems);
  // The clocks are there already, and are found by their places.
  Importer importer(run, console, options.type, options.update || !HasCategories(options.type));
  for (Part& part : parts) {
    const auto done = importer.Into(*part.category, part.records);
    if (!done) {
      console.Fail(done.Why());
      anyProblem = true;
    }
  }
  return Summarise(console, importer.Result(), anyProblem);
}

int RunImport(const CommandLine& line, const ImportOptions& options) {
  const Console& console = line.console;
  const std::string complaint = ComplaintAbout(options);
  if (!complaint.empty()) return console.FailUsage(complaint);
  const auto text = ReadNativeFile(options.file, kLargestImport);
  if (!text) return console.Fail(text.Why());
  return WithWritingRun(line, !AnyNeedsCalendars({options.type}), [&](EngineRun& run) {
    run.Objects().setWindowChain(true);
    return Import(run, console, options, *text);
  });
}

}  // namespace

void AddImportCommand(CLI::App& app, CommandLine& line) {
  CLI::App* command = app.add_subcommand("import", "Bring records into the organiser's files");
  command->footer(
      "json and csv are those of `pairwise export`. Each record that is refused, or not kept as it "
      "was given, is told.");
  auto options = std::make_shared<ImportOptions>();
  command->add_option("type", options->type, "Data type, such as contact")
      ->required()
      ->check(CLI::IsMember({"contact", "calendar", "todo", "memo", "timezone"}))
      ->type_name("TYPE");
  command->add_option("file", options->file, "File to read")->required()->type_name("FILE");
  command
      ->add_option("--category", options->category,
                   "Name or location of the category that they go to; needed where there are "
                   "several and the file doesn't tell")
      ->type_name("CATEGORY");
  command
      ->add_option(
          "--format", options->format,
          "json, csv, vcf for contacts, ics for todo and calendar; else by the file's name")
      ->check(CLI::IsMember(std::vector<std::string>(std::begin(kFormats), std::end(kFormats))))
      ->type_name("FORMAT");
  command->add_flag("--update", options->update,
                    "Change the records that have the same id, and add the others");
  command->callback(
      [&line, options] { line.chosen = [&line, options] { return RunImport(line, *options); }; });
}

}  // namespace pw
