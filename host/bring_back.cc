#include "host/bring_back.h"

#include <ctime>
#include <filesystem>
#include <ostream>
#include <vector>

#include "host/backups.h"
#include "host/counted.h"
#include "host/restore.h"
#include "host/run_mark.h"

namespace pw {
namespace {

std::string JoinedNames(const std::vector<std::filesystem::path>& files) {
  std::string text;
  for (const auto& file : files) text += (text.empty() ? "" : ", ") + file.filename().string();
  return text;
}

int TellFailure(const Console& console, const Restored& restored, const std::string& before) {
  const std::string done = restored.putBack.empty()
                               ? "nothing was put back"
                               : "put back so far: " + JoinedNames(restored.putBack);
  return console.Fail(
      {restored.failure->message + "; " + done + "; what was there before is in backup " + before});
}

void TellWhatWasDone(const Console& console, const Restored& restored, const std::string& name,
                     const std::string& before) {
  for (const auto& file : restored.leftAlone) {
    console.messages << file.string()
                     << ": a link that leads away from the profile's drives; it is left alone\n";
  }
  for (const auto& file : restored.removed) {
    console.messages << file.string() << ": not in " << name << ", so it is removed\n";
  }
  console.messages << Counted(restored.putBack.size(), "file is", "files are") << " as in " << name
                   << "; what was there before is in " << before << "\n";
}

}  // namespace

int BringBack(const Console& console, const Profile& profile, const std::string& name) {
  const auto list = ReadBackup(profile, name);
  if (!list) return console.Fail(list.Why());
  const auto places = PlacesOf(profile, *list);
  if (!places) return console.Fail(places.Why());
  const auto unfinished = BackupOfUnfinishedRun(profile);
  const auto before =
      MakeBackup(profile, std::time(nullptr), {{name, unfinished.value_or("")}, *places});
  if (!before) return console.Fail(before.Why());

  // What was there before a run that was cut off is of more use than what that one has left.
  const bool hasGoodOne = unfinished && !unfinished->empty();
  auto mark = RunMark::Set(profile, hasGoodOne ? *unfinished : before->name);
  if (!mark) return console.Fail(mark.Why());
  const Restored restored =
      RestoreBackup(profile, name, *list, unfinished ? NewFiles::kGo : NewFiles::kStay);
  if (!restored.failure) {
    TellWhatWasDone(console, restored, name, before->name);
    return kExitDone;
  }
  if (unfinished || !restored.putBack.empty()) mark->Leave();
  return TellFailure(console, restored, before->name);
}

}  // namespace pw
