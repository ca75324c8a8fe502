#include <algorithm>
#include <iterator>
#include <map>
#include <memory>
#include <optional>
#include <ostream>
#include <set>
#include <string>
#include <string_view>
#include <vector>

#include <CLI/CLI.hpp>

#include "base/codepage.h"
#include "base/text.h"
#include "host/calendar_guard.h"
#include "host/catalogue.h"
#include "host/closed_files.h"
#include "host/commands/commands.h"
#include "host/commands/profile_run.h"
#include "host/counted.h"
#include "host/formats/line_errors.h"
#include "host/import/calendar_records.h"
#include "host/import/contact_records.h"
#include "host/import/damage.h"
#include "host/import/importer.h"
#include "host/import/typed_csv.h"
#include "host/import/typed_json.h"
#include "host/native_file.h"
#include "host/run_mark.h"

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
// was in, or the only one that there is.
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

// Of the records those that have one.
std::vector<Part> PartsOf(std::vector<IncomingRecord>& records,
                          const PWSourceCategoryVector& categories) {
  std::vector<Part> parts;
  for (IncomingRecord& record : records) {
    const PWSourceCategory* category = CategoryOf(record, categories);
    if (category == nullptr) continue;
    auto part = std::find_if(parts.begin(), parts.end(),
                             [&](const Part& each) { return each.category == category; });
    if (part == parts.end()) part = parts.insert(parts.end(), {category, {}});
    part->records.push_back(std::move(record));
  }
  return parts;
}

// Those that have no category are told.
void LeaveOutStrays(Incoming& incoming, const PWSourceCategoryVector& categories) {
  LineErrors strays;
  std::erase_if(incoming.records, [&](const IncomingRecord& record) {
    if (CategoryOf(record, categories) != nullptr) return false;
    strays.Add(record.where + ": there is no category '" + record.category +
               "' for it; name one on the command line");
    return true;
  });
  const std::vector<std::string> told = strays.Told();
  incoming.problems.insert(incoming.problems.end(), told.begin(), told.end());
}

// Those that go into files that can't be changed, of which each is told. What comes upon calendars
// doesn't start at all then.
void LeaveOutClosed(EngineRun& run, const std::string& type,
                    const PWSourceCategoryVector& categories, Incoming& incoming) {
  if (AnyNeedsCalendars({type})) return;
  std::map<const PWSourceCategory*, bool> isClosed;
  std::set<std::string> told;  // several categories may be of one file
  for (const IncomingRecord& record : incoming.records) {
    const PWSourceCategory* category = CategoryOf(record, categories);
    if (isClosed.count(category) > 0) continue;
    const auto reasons = ClosedFiles(run, type, category->Location.Str(), FileChange::kSaved);
    isClosed[category] = !reasons.empty();
    for (const std::string& reason : reasons) {
      if (told.insert(reason).second) incoming.problems.push_back(reason);
    }
  }
  std::erase_if(incoming.records, [&](const IncomingRecord& record) {
    return isClosed[CategoryOf(record, categories)];
  });
}

Outcome<PWSourceCategoryVector> CategoriesFor(EngineRun& run, const ImportOptions& options) {
  auto categories = ChooseCategories(run.Manager(), options.type, options.category);
  if (categories && categories->Count() == 0) {
    return Failure{"there is no " + options.type +
                   " category to import into; `pairwise new` makes one"};
  }
  return categories;
}

int Summarise(const Console& console, const Importer::Counts& counts, bool anyProblem) {
  console.out << Counted(counts.added, "record", "records") << " added";
  if (counts.updated > 0) console.out << ", " << counts.updated << " updated";
  if (counts.changed > 0) console.out << ", " << counts.changed << " of them changed";
  if (counts.missing > 0) console.out << ", " << counts.missing << " of them missing in the file";
  if (counts.refused > 0) console.out << ", " << counts.refused << " refused";
  console.out << "\n";
  const bool isAll = !anyProblem && counts.refused == 0 && counts.missing == 0;
  return isAll ? kExitDone : kExitSomeSkipped;
}

// What the file holds for the organiser, and whether anything of it was told to be left out.
struct Prepared {
  std::vector<IncomingRecord> records;
  bool anyProblem = false;
};

// Reads the file, and tells what of it can't come along. Gives the exit code if nothing can.
std::optional<int> Prepare(EngineRun& run, const Console& console, const ImportOptions& options,
                           std::string_view text, Prepared& prepared) {
  const auto categories = CategoriesFor(run, options);
  if (!categories) return console.Fail(categories.Why());
  if (options.type == kContactType && categories->Count() > 1) {
    return console.FailUsage("which cardfile? There are several (`pairwise categories contact`)");
  }
  // Without its names of fields nothing of the file could be known.
  if (options.type == kContactType) {
    const auto damaged = WhyDamaged(run, kContactType, *categories->At(0));
    if (damaged) {
      console.Fail(*damaged);
      return Summarise(console, {}, true);
    }
  }
  Incoming incoming = Read(run, options, text, *categories);
  if (incoming.records.empty() && incoming.problems.empty()) {
    incoming.problems.push_back(options.file + ": holds no " + options.type + " records");
  }
  LeaveOutStrays(incoming, *categories);
  LeaveOutClosed(run, options.type, *categories, incoming);
  console.Warn(incoming.remarks);
  prepared.anyProblem = console.Warn(incoming.problems);
  prepared.records = std::move(incoming.records);
  if (prepared.records.empty()) return Summarise(console, {}, prepared.anyProblem);
  return std::nullopt;
}

int Bring(EngineRun& run, const Console& console, const ImportOptions& options,
          Prepared& prepared) {
  const auto categories = CategoriesFor(run, options);
  if (!categories) return console.Fail(categories.Why());
  // The clocks are there already, and are found by their places.
  Importer importer(run, console, options.type, options.update || !HasCategories(options.type));
  for (Part& part : PartsOf(prepared.records, *categories)) {
    const auto done = importer.Into(*part.category, part.records);
    if (done) continue;
    console.Fail(done.Why());
    prepared.anyProblem = true;
  }
  return Summarise(console, importer.Result(), prepared.anyProblem);
}

// In a run that only reads: a file that holds nothing needs no backup.
std::optional<int> PrepareBeforehand(const Console& console, const Profile& profile,
                                     const ImportOptions& options, std::string_view text,
                                     Prepared& prepared) {
  const auto run = EngineRun::Start(profile, RunMode::kReading, console.messages);
  if (!run) return console.Fail(run.Why());
  return Prepare(**run, console, options, text, prepared);
}

int RunImport(const CommandLine& line, const ImportOptions& options) {
  const Console& console = line.console;
  const std::string complaint = ComplaintAbout(options);
  if (!complaint.empty()) return console.FailUsage(complaint);
  const auto text = ReadNativeFile(options.file, kLargestImport);
  if (!text) return console.Fail(text.Why());
  return WithProfile(line, [&](const Profile& profile) {
    Prepared prepared;
    // What a run that was cut off has left must be settled before anything is read.
    const bool isSettled = !BackupOfCutOffRun(profile);
    if (isSettled) {
      const auto code = PrepareBeforehand(console, profile, options, *text, prepared);
      if (code) return *code;
    }
    return WithWritingRun(line, !AnyNeedsCalendars({options.type}), [&](EngineRun& run) {
      run.Objects().setWindowChain(true);
      if (!isSettled) {
        const auto code = Prepare(run, console, options, *text, prepared);
        if (code) return *code;
      }
      return Bring(run, console, options, prepared);
    });
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
