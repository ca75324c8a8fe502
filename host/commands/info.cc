#include <ostream>
#include <string>

#include <CLI/CLI.hpp>

#include "base/codepage.h"
#include "host/calendar_files.h"
#include "host/catalogue.h"
#include "host/commands/commands.h"
#include "host/commands/profile_run.h"
#include "host/counted.h"
#include "host/organiser_folder.h"
#include "host/record_reader.h"
#include "host/text_table.h"
#include "platform/platform.h"

// `pairwise info`: what a profile leads to.
namespace pw {
namespace {

constexpr std::size_t kLabelWidth = 10;

bool HasClocks(EngineRun& run) {
  const std::string folder = OrganiserFolder(run);
  return !folder.empty() && CurrentPlatform().files->Exists(folder + "\\CLOCKS.DAT");
}

// The clocks have no categories, and many a profile has no clocks.
std::string ClocksSummary(EngineRun& run, const Console& console, const std::string& type,
                          bool& anyLeftOut) {
  if (!HasClocks(run)) return "none here";
  const auto opened = OpenForReading(run, type, PWSourceCategory());
  if (opened) return Counted(opened->source->RecordCount(), "record", "records");
  console.Fail(opened.Why());
  anyLeftOut = true;
  return "unreadable";
}

std::string TypeSummary(EngineRun& run, const Console& console, const std::string& type,
                        bool& anyLeftOut) {
  PWSourceCategoryVector categories;
  if (run.Manager().ListCategories(type.c_str(), categories) != kResultOk) {
    const std::unique_ptr<PWSource> source(run.Manager().CreateSource(type.c_str()));
    return source == nullptr ? "not served yet" : "nobody's files are named";
  }
  std::size_t records = 0;
  std::size_t unreadable = 0;
  for (std::uint32_t i = 0; i < categories.Count(); ++i) {
    if (type == kCalendarType && !HasCalendar(categories.At(i)->Location.Str())) continue;
    const auto opened = OpenForReading(run, type, *categories.At(i));
    if (!opened) {
      console.Fail(opened.Why());
      ++unreadable;
      continue;
    }
    records += opened->source->RecordCount();
    if (console.Warn(opened->problems)) anyLeftOut = true;
  }
  std::string text = Counted(categories.Count(), "category", "categories") + ", " +
                     Counted(records, "record", "records");
  if (unreadable > 0) anyLeftOut = true;
  if (unreadable > 0) text += ", " + Counted(unreadable, "file", "files") + " unreadable";
  return text;
}

int Info(EngineRun& run, const CommandLine& line) {
  std::ostream& out = line.console.out;
  const auto print = [&](const std::string& label, const std::string& text) {
    out << Fitted(label, kLabelWidth) << OneLine(text) << "\n";
  };
  PWSourceManager& manager = run.Manager();
  print("Profile", line.profileFolder);
  print("Product", CodePageToUtf8(manager.Name().View()) +
                       (manager.IsInstalled() ? " (installed)" : " (not installed here)"));
  const std::string folder = run.Objects().config.String(PWConfig::kDataFolder).Str();
  print("Data", CodePageToUtf8(folder) + ", which is " + run.NativePathOf(folder));
  bool anyLeftOut = false;
  for (const std::string& type : TypeNames(manager)) {
    print(type, HasCategories(type) ? TypeSummary(run, line.console, type, anyLeftOut)
                                    : ClocksSummary(run, line.console, type, anyLeftOut));
  }
  return anyLeftOut ? kExitSomeSkipped : kExitDone;
}

}  // namespace

void AddInfoCommand(CLI::App& app, CommandLine& line) {
  CLI::App* command = app.add_subcommand("info", "Say what the profile leads to");
  command->callback([&line] {
    line.chosen = [&line] {
      return WithReadingRun(line, [&](EngineRun& run) { return Info(run, line); });
    };
  });
}

}  // namespace pw
