#include "host/commands/profile_run.h"

#include <ctime>
#include <string>
#include <utility>

#include "host/backups.h"
#include "host/calendar_guard.h"
#include "host/commands/cut_off_run.h"
#include "host/run_mark.h"

namespace pw {
namespace {

// What a run has to tell at its end. Gives the exit code.
int EndRun(const Console& console, EngineRun& run, int code) {
  run.ShowLog();
  const auto lost = run.RegistryFailure();
  return lost ? console.Fail(*lost) : code;
}

// The module doesn't say where a save failed.
int TellUnwritten(const Console& console, const EngineRun& run, const std::string& backup,
                  int code) {
  const std::vector<std::string> files = run.UnwrittenFiles();
  for (const std::string& file : files) {
    console.Fail({file + ": could not be written whole"});
  }
  if (files.empty()) return code;
  return console.Fail({"`pairwise restore " + backup + "` brings back what was there before"});
}

int WorkInPlace(const Console& console, const Profile& profile, EngineRun& run, bool force,
                const std::function<int(EngineRun&)>& work) {
  if (const auto why = CalendarInTheWay(run, force)) return console.Fail(*why);
  const auto backup = MakeBackup(profile, std::time(nullptr));
  if (!backup) return console.Fail(backup.Why());
  const auto mark = RunMark::Set(profile, *backup);
  if (!mark) return console.Fail(mark.Why());
  console.messages << "pairwise: the files as they were are in backup " << *backup << "\n";
  return TellUnwritten(console, run, *backup, EndRun(console, run, work(run)));
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

int WithReadingRun(const CommandLine& line, const std::function<int(EngineRun&)>& work) {
  const Console& console = line.console;
  return WithProfile(line, [&](const Profile& profile) {
    TellOfCutOffRun(console, profile);
    const auto run = EngineRun::Start(profile, RunMode::kReading, console.messages);
    return run ? EndRun(console, **run, work(**run)) : console.Fail(run.Why());
  });
}

int WithWritingRun(const CommandLine& line, bool force,
                   const std::function<int(EngineRun&)>& work) {
  const Console& console = line.console;
  return WithLockedProfile(line, [&](const Profile& profile, ProfileLock lock) {
    if (const auto code = SettleCutOffRun(console, profile)) return *code;
    const auto run =
        EngineRun::Start(profile, RunMode::kWriting, console.messages, std::move(lock));
    return run ? WorkInPlace(console, profile, **run, force, work) : console.Fail(run.Why());
  });
}

}  // namespace pw
