#include "host/bring_back.h"

#include <ctime>
#include <filesystem>
#include <optional>
#include <ostream>
#include <system_error>
#include <utility>
#include <vector>

#include "host/backups.h"
#include "host/counted.h"
#include "host/native_file.h"
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
                     const std::string& before, const std::string& ofCutOffRun) {
  for (const auto& file : restored.leftAlone) {
    console.messages << file.string()
                     << ": a link that leads away from the profile's drives; it is left alone\n";
  }
  for (const auto& file : restored.removed) {
    console.messages << file.string() << ": not in " << name << ", so it is removed\n";
  }
  for (const auto& file : restored.leftCut) {
    console.messages << file.string() << ": not in " << name
                     << ", so it stays as the run that was cut off has left it; " << ofCutOffRun
                     << " has it as it was\n";
  }
  console.messages << Counted(restored.putBack.size(), "file is", "files are") << " as in " << name
                   << "; what was there before is in " << before << "\n";
}

// A data folder that has gone is made again, empty. Gives what stands in the way.
std::optional<Failure> MakeDataFolder(const Console& console,
                                      const std::vector<DataPlace>& places) {
  for (const DataPlace& place : places) {
    std::error_code error;
    if (place.kind != PlaceKind::kData || std::filesystem::exists(place.folder, error)) continue;
    std::filesystem::create_directories(place.folder, error);
    if (error) return SystemFailure(place.folder, error.value());
    console.messages << place.folder.string() << ": was not there, and is made again\n";
  }
  return std::nullopt;
}

// Nothing where there was none, or nobody can tell what was there before it.
std::optional<CutOffRun> CutOffRunBefore(const Profile& profile,
                                         const std::optional<std::string>& unfinished) {
  if (!unfinished || unfinished->empty()) return std::nullopt;
  auto list = ReadBackup(profile, *unfinished);
  if (!list) return std::nullopt;
  return CutOffRun{*unfinished, std::move(*list)};
}

}  // namespace

int BringBack(const Console& console, const Profile& profile, const std::string& name) {
  const auto list = ReadBackup(profile, name);
  if (!list) return console.Fail(list.Why());
  const auto places = PlacesOf(profile, *list);
  if (!places) return console.Fail(places.Why());
  if (const auto why = MakeDataFolder(console, *places)) return console.Fail(*why);
  const auto unfinished = BackupOfUnfinishedRun(profile);
  const auto before =
      MakeBackup(profile, std::time(nullptr), {{name, unfinished.value_or("")}, *places});
  if (!before) return console.Fail(before.Why());

  // What was there before a run that was cut off is of more use than what that one has left.
  const bool hasGoodOne = unfinished && !unfinished->empty();
  auto mark = RunMark::Set(profile, hasGoodOne ? *unfinished : before->name);
  if (!mark) return console.Fail(mark.Why());
  const auto cutOff = CutOffRunBefore(profile, unfinished);
  const Restored restored = RestoreBackup(profile, name, *list, cutOff);
  if (!restored.failure) {
    TellWhatWasDone(console, restored, name, before->name, unfinished.value_or(""));
    return kExitDone;
  }
  if (unfinished || !restored.putBack.empty()) mark->Leave();
  return TellFailure(console, restored, before->name);
}

}  // namespace pw
