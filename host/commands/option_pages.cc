#include "host/commands/option_pages.h"

#include <filesystem>
#include <ostream>
#include <system_error>
#include <utility>

#include <CLI/CLI.hpp>

#include "base/codepage.h"
#include "host/answered_dialogs.h"
#include "host/answers.h"
#include "host/category_refresh.h"
#include "host/commands/cut_off_run.h"
#include "host/commands/profile_run.h"
#include "host/data_folder.h"
#include "host/drives_dialogs.h"
#include "host/settled_profile.h"
#include "platform/platform.h"
#include "platform/posix/terminal_dialogs.h"

namespace pw {
namespace {

constexpr const char* kAnswersHelp =
    "An answers file names pages and controls; what it leaves out is taken as the page offers it:\n"
    "  [synchronize]          for options\n"
    "  mode = \"on\"            or \"off\", \"overwrite-next\", \"overwrite-always\"\n"
    "  sure = true            answers the question before overwriting by Yes\n"
    "  [folder]               for options\n"
    "  browse = 'C:\\Data'     a data folder that holds all files of one\n"
    "  folder = 'C:\\Data'     any folder; it is taken as it is\n"
    "  calendar = 'Ada'       the stem of the calendar and to-do files\n"
    "  [setup]                for setup; browse and folder as above\n"
    "Only the profile is written, never the organiser's files.";

// The dialogs of the process for as long as it lives.
class DialogsInPlace {
 public:
  explicit DialogsInPlace(Dialogs& dialogs) {
    Platform services = CurrentPlatform();
    services.dialogs = &dialogs;
    before = SetPlatform(services);
  }
  ~DialogsInPlace() { SetPlatform(before); }
  DialogsInPlace(const DialogsInPlace&) = delete;
  DialogsInPlace& operator=(const DialogsInPlace&) = delete;

 private:
  Platform before;
};

// Whoever works the pages.
Outcome<PWConfig> Show(const Console& console, const OptionPages& pages,
                       const std::optional<Answers>& answers, const Profile& profile,
                       EngineRun& run) {
  TerminalDialogs terminal(console.in, console.messages, !answers, console.messagesWidth);
  AnsweredDialogs answered(terminal, answers.value_or(Answers()), console.messages);
  DrivesDialogs chosen(answers ? static_cast<Dialogs&>(answered) : terminal, profile);
  const DialogsInPlace dialogs(chosen);
  auto settings = pages.show(run);
  if (settings) return std::move(*settings);
  if (answered.Refusal()) return Failure{answered.Refusal()->message + "; nothing was saved"};
  return Failure{"cancelled, nothing was saved"};
}

// The lists are read by a run of its own, as they may be those of another folder than before.
int TellCategories(const Console& console, const Profile& profile) {
  const auto run = EngineRun::Start(profile, RunMode::kReading, console.messages);
  if (!run) return console.Fail(run.Why());
  EngineObjects& objects = (*run)->Objects();
  RefreshCategories(objects);
  console.messages << "categories there:";
  const char* separator = " ";
  for (std::uint32_t i = 0; i < objects.applicationSource.Types.Count(); ++i) {
    const auto* type = static_cast<PWAppSrcTypeInfo*>(objects.applicationSource.Types.At(i));
    if (type->Categories.Count() == 0) continue;
    console.messages << separator << type->Categories.Count() << " " << type->Name.View();
    separator = ", ";
  }
  console.messages << (*separator == ' ' ? " none\n" : "\n");
  return kExitDone;
}

struct Shown {
  Profile settled;
  bool isRefreshWanted = false;
};

// Shows the pages, and saves what they have settled while the profile is still locked.
Outcome<Shown> ShowAndSave(const Console& console, const OptionPages& pages,
                           const std::optional<Answers>& answers, const Profile& profile,
                           ProfileLock lock) {
  const auto run = EngineRun::Start(profile, RunMode::kSettling, console.messages, std::move(lock));
  if (!run) return run.Why();
  auto settings = Show(console, pages, answers, profile, **run);
  if (!settings) return settings.Why();
  const PWApplicationSource& source = (*run)->Objects().applicationSource;
  Shown shown{SettledProfile(profile, *settings, source.SyncMode), TakeRefreshRequests(source)};
  const std::string changes = SettledChanges(profile, shown.settled);
  if (changes.empty()) {
    console.messages << "nothing has changed\n";
    return shown;
  }
  if (const auto unusable = WhyUnusable(profile, shown.settled)) return *unusable;
  const auto saved = SaveSettled(profile, shown.settled);
  if (!saved) return saved.Why();
  console.messages << "saved in " << profile.DescriptionFile().string() << ": " << changes << "\n";
  console.Warn(SettledWarnings(profile, shown.settled));
  return shown;
}

int Work(const Console& console, const OptionPages& pages, const std::optional<Answers>& answers,
         const Profile& profile, ProfileLock lock) {
  // A backup goes back into the folder that the profile names.
  if (const auto code = SettleCutOffRun(console, profile)) return *code;
  const auto shown = ShowAndSave(console, pages, answers, profile, std::move(lock));
  if (!shown) return console.Fail(shown.Why());
  const auto folder = NativeDataFolder(shown->settled);
  std::error_code error;
  // A folder that isn't there was told already.
  const bool isThere = folder && std::filesystem::is_directory(*folder, error);
  return shown->isRefreshWanted && isThere ? TellCategories(console, shown->settled) : kExitDone;
}

int Run(const CommandLine& line, const OptionPages& pages, const std::string& answersFile) {
  const Console& console = line.console;
  std::optional<Answers> answers;
  if (!answersFile.empty()) {
    auto read = ReadAnswers(answersFile, pages.dialogs);
    if (!read) return console.Fail(read.Why());
    answers = std::move(*read);
  } else if (!console.isAsking) {
    return console.FailUsage("nobody is there to be asked; give the answers by --answers FILE");
  }
  return WithLockedProfile(line, [&](const Profile& profile, ProfileLock lock) {
    return Work(console, pages, answers, profile, std::move(lock));
  });
}

}  // namespace

void AddOptionPagesCommand(CLI::App& app, CommandLine& line, const char* name, const char* about,
                           const OptionPages& pages) {
  CLI::App* command = app.add_subcommand(name, about);
  command->footer(kAnswersHelp);
  auto answers = std::make_shared<std::string>();
  command->add_option("--answers", *answers, "Answers to the pages, where nobody is to be asked")
      ->type_name("FILE");
  command->callback([&line, pages, answers] {
    line.chosen = [&line, pages, answers] { return Run(line, pages, *answers); };
  });
}

}  // namespace pw
