#include "host/commands/profile_run.h"

#include <ctime>
#include <filesystem>
#include <string>
#include <system_error>
#include <utility>

#include "host/backups.h"
#include "host/calendar_guard.h"
#include "host/commands/cut_off_run.h"
#include "host/data_places.h"
#include "host/organiser_guard.h"
#include "host/run_mark.h"

namespace pw {
namespace {

// What a run has to tell at its end. Gives the exit code.
int EndRun(const Console& console, EngineRun& run, int code) {
  run.ShowLog();
  const auto lost = run.RegistryFailure();
  return lost ? console.Fail(*lost) : code;
}

// The module doesn't say where a save failed. Where all is as it was there is nothing to bring
// back.
int TellUnwritten(const Console& console, const Profile& profile, const EngineRun& run,
                  const std::string& backup, int code) {
  const std::vector<std::string> files = run.UnwrittenFiles();
  if (files.empty()) return code;
  const bool isUnchanged = IsAsInBackup(profile, backup);
  for (const std::string& file : files) {
    const std::string native = run.NativePathOf(file);
    std::error_code error;
    const bool isMissing = isUnchanged && !std::filesystem::exists(native, error);
    const Failure cut{native +
                      (isMissing ? ": could not be made" : ": could not be written whole")};
    console.Fail(run.WhyClosed(file).value_or(cut));
  }
  if (isUnchanged) return kExitFailed;
  return console.Fail({"`pairwise restore " + backup + "` brings back what was there before"});
}

// For as long as it lives the profile is marked; before the mark goes, what the module has changed
// is on the disk.
class MarkedRun {
 public:
  MarkedRun(const Profile& profile, RunMark mark) : profile(profile), mark(std::move(mark)) {}
  ~MarkedRun() { SyncPlaces(profile); }
  MarkedRun(const MarkedRun&) = delete;
  MarkedRun& operator=(const MarkedRun&) = delete;

 private:
  const Profile& profile;
  RunMark mark;
};

// What doesn't keep a run away from the files.
struct Overcome {
  bool calendars = false;  // as far as can be
  bool dialogs = false;    // of the organiser's
};

std::optional<Failure> DialogInTheWay(const Overcome& overcome) {
  return overcome.dialogs ? std::nullopt : OrganiserInTheWay();
}

// One may have been opened while the person was asked.
int WorkInPlace(const Console& console, const Profile& profile, EngineRun& run,
                const Overcome& overcome, const std::function<int(EngineRun&)>& work) {
  if (const auto why = DialogInTheWay(overcome)) return console.Fail(*why);
  if (const auto why = CalendarInTheWay(run, overcome.calendars)) return console.Fail(*why);
  const auto backup = MakeBackup(profile, std::time(nullptr));
  if (!backup) return console.Fail(backup.Why());
  auto mark = RunMark::Set(profile, backup->name);
  if (!mark) return console.Fail(mark.Why());
  const MarkedRun marked(profile, std::move(*mark));
  console.messages << "pairwise: the files as they were are in backup " << backup->name << "\n";
  return TellUnwritten(console, profile, run, backup->name, EndRun(console, run, work(run)));
}

// The exit code if the person doesn't agree, or can't be asked.
std::optional<int> NotAgreed(const Console& console, const Profile& profile, const AskFirst& ask) {
  if (!ask) return std::nullopt;
  const auto run = EngineRun::Start(profile, RunMode::kReading, console.messages);
  if (!run) return console.Fail(run.Why());
  const auto code = ask(**run);
  (*run)->ShowLog();
  return code;
}

int RunInPlace(const CommandLine& line, const Overcome& overcome,
               const std::function<int(EngineRun&)>& work, const AskFirst& ask) {
  const Console& console = line.console;
  return WithLockedProfile(line, [&](const Profile& profile, ProfileLock lock) {
    if (const auto code = SettleCutOffRun(console, profile)) return *code;
    const auto data = DataLock::Take(profile);
    if (!data) return console.Fail(data.Why());
    if (const auto why = DialogInTheWay(overcome)) return console.Fail(*why);
    if (const auto code = NotAgreed(console, profile, ask)) return *code;
    const auto run =
        EngineRun::Start(profile, RunMode::kWriting, console.messages, std::move(lock));
    return run ? WorkInPlace(console, profile, **run, overcome, work) : console.Fail(run.Why());
  });
}

}  // namespace

int WithProfile(const CommandLine& line, const std::function<int(const Profile&)>& work) {
  const Console& console = line.console;
  if (line.profileFolder.empty()) {
    return console.FailUsage(
        "which profile? Give it as --profile DIR, or set PAIRWISE_PROFILE (`pairwise init` makes "
        "one)");
  }
  const auto profile = ReadProfile(line.profileFolder);
  return profile ? work(*profile) : console.Fail(profile.Why());
}

int WithLockedProfile(const CommandLine& line,
                      const std::function<int(const Profile&, ProfileLock)>& work) {
  return WithProfile(line, [&](const Profile& profile) {
    auto lock = ProfileLock::Take(profile);
    return lock ? work(profile, std::move(*lock)) : line.console.Fail(lock.Why());
  });
}

int WithLockedData(const CommandLine& line, const std::function<int(const Profile&)>& work) {
  return WithLockedProfile(line, [&](const Profile& profile, const ProfileLock& /*lock*/) {
    const auto data = DataLock::Take(profile);
    return data ? work(profile) : line.console.Fail(data.Why());
  });
}

int WithReadingRun(const CommandLine& line, const std::function<int(EngineRun&)>& work) {
  const Console& console = line.console;
  return WithProfile(line, [&](const Profile& profile) {
    TellOfCutOffRun(console, profile);
    const auto run = EngineRun::Start(profile, RunMode::kReading, console.messages);
    return run ? EndRun(console, **run, work(**run)) : console.Fail(run.Why());
  });
}

int WithWritingRun(const CommandLine& line, bool force, const std::function<int(EngineRun&)>& work,
                   const AskFirst& ask) {
  return RunInPlace(line, {force, false}, work, ask);
}

int WithDrivenRun(const CommandLine& line, bool force, const std::function<int(EngineRun&)>& work) {
  return RunInPlace(line, {force, true}, work, {});
}

}  // namespace pw
