#include "host/commands/cut_off_run.h"

#include <ostream>
#include <string>

#include "host/backups.h"
#include "host/counted.h"
#include "host/run_mark.h"

namespace pw {
namespace {

constexpr const char* kWhatHappened =
    "pairwise: the last run that writes was cut off, and may have left files half written; ";

std::string Ways(const std::string& backup) {
  return "`pairwise restore " + backup +
         "` brings back what was there before, `pairwise restore --keep` keeps what is there";
}

}  // namespace

void TellOfCutOffRun(const Console& console, const Profile& profile) {
  const auto backup = BackupOfCutOffRun(profile);
  if (backup) console.messages << kWhatHappened << Ways(*backup) << "\n";
}

std::optional<int> SettleCutOffRun(const Console& console, const Profile& profile) {
  const auto backup = BackupOfUnfinishedRun(profile);
  if (!backup) return std::nullopt;
  if (!console.isAsking) {
    console.messages << kWhatHappened << Ways(*backup) << "\n";
    return kExitFailed;
  }
  console.messages << kWhatHappened << "what was there before is in backup " << *backup << "\n";
  const auto answer = console.Ask("Restore it (r), keep what is there (k), or stop (Enter)? ");
  if (answer == "k") {
    ForgetUnfinishedRun(profile);
    return std::nullopt;
  }
  if (answer != "r") return kExitFailed;
  const auto restored = RestoreBackup(profile, *backup);
  if (!restored) return console.Fail(restored.Why());
  ForgetUnfinishedRun(profile);
  console.messages << Counted(*restored, "file is", "files are") << " as in " << *backup << "\n";
  return std::nullopt;
}

}  // namespace pw
