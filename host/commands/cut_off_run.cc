#include "host/commands/cut_off_run.h"

#include <ostream>
#include <string>

#include "host/bring_back.h"
#include "host/profile_lock.h"
#include "host/run_mark.h"

namespace pw {
namespace {

constexpr const char* kWhatHappened =
    "pairwise: the last run that writes was cut off, and may have left files half written; ";

constexpr const char* kKeeping = "`pairwise restore --keep` keeps what is there";

// The name is empty where the mark of the run doesn't tell it.
std::string Ways(const std::string& backup) {
  if (backup.empty()) return std::string("`pairwise restore` lists the backups, ") + kKeeping;
  return "`pairwise restore " + backup + "` brings back what was there before, " + kKeeping;
}

void Tell(const Console& console, const std::optional<std::string>& backup) {
  if (backup) console.messages << kWhatHappened << Ways(*backup) << "\n";
}

// Gives what the person says: "r", "k" or anything else.
std::string AskAboutFiles(const Console& console, const std::string& backup) {
  if (backup.empty()) {
    console.messages << kWhatHappened << "`pairwise restore` lists the backups\n";
    return console.Ask("Keep what is there (k), or stop (Enter)? ").value_or("");
  }
  console.messages << kWhatHappened << "what was there before is in backup " << backup << "\n";
  return console.Ask("Restore it (r), keep what is there (k), or stop (Enter)? ").value_or("");
}

// The exit code if it can't be done.
std::optional<int> Restore(const Console& console, const Profile& profile,
                           const std::string& backup) {
  const auto lock = DataLock::Take(profile);
  if (!lock) return console.Fail(lock.Why());
  const int code = BringBack(console, profile, backup);
  return code == kExitDone ? std::nullopt : std::optional(code);
}

}  // namespace

void TellOfCutOffRun(const Console& console, const Profile& profile) {
  Tell(console, BackupOfCutOffRun(profile));
}

void TellOfUnfinishedRun(const Console& console, const Profile& profile) {
  Tell(console, BackupOfUnfinishedRun(profile));
}

std::optional<int> SettleCutOffRun(const Console& console, const Profile& profile) {
  const auto backup = BackupOfUnfinishedRun(profile);
  if (!backup) return std::nullopt;
  if (!console.isAsking) {
    Tell(console, backup);
    return kExitFailed;
  }
  const std::string answer = AskAboutFiles(console, *backup);
  if (answer == "k") {
    ForgetUnfinishedRun(profile);
    return std::nullopt;
  }
  if (answer == "r" && !backup->empty()) return Restore(console, profile, *backup);
  console.messages << "nothing was done\n";
  return kExitFailed;
}

}  // namespace pw
