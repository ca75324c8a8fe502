#include "host/restore.h"

#include <algorithm>
#include <set>
#include <system_error>
#include <utility>

#include "base/codepage.h"
#include "host/data_folder.h"
#include "host/data_places.h"
#include "host/file_copy.h"
#include "host/native_file.h"
#include "host/organiser_files.h"
#include "host/traceless.h"
#include "platform/posix/path_table.h"

namespace pw {
namespace {

namespace fs = std::filesystem;

bool AreSpellingsOfOne(const std::string& a, const std::string& b) {
  const auto first = OrganiserName(a);
  const auto second = OrganiserName(b);
  return first && second && EqualFileNames(*first, *second);
}

// A part of a backup, and the folder that has its files.
struct KeptPart {
  BackupPart part;
  fs::path folder;
};

// Nothing where the backup has none of that place.
std::optional<KeptPart> PartOfPlace(const Profile& profile, const CutOffRun& run,
                                    const DataPlace& place) {
  const auto places = PlacesOf(profile, run.list);
  if (!places) return std::nullopt;
  for (std::size_t i = 0; i < places->size(); ++i) {
    std::error_code error;
    const fs::path& folder = (*places)[i].folder;
    if (folder != place.folder && !fs::equivalent(folder, place.folder, error)) continue;
    return KeptPart{run.list[i], PartFolder(BackupFolder(profile, run.backup), i)};
  }
  return std::nullopt;
}

// One part of a backup on its way back into its place.
class PartRestore {
 public:
  // `before` is what there was before a run that was cut off; nothing where none was, or it wasn't
  // of that place.
  PartRestore(const Profile& profile, const DataPlace& place, const BackupPart& part,
              std::optional<KeptPart> before, Restored& result)
      : profile(profile), place(place), part(part), before(std::move(before)), result(result) {}

  void Run(const fs::path& from) {
    std::error_code error;
    fs::create_directories(place.folder, error);
    RemoveTemporaries();
    for (const ListedFile& file : part.files) {
      if (!PutBack(from, file.name)) return;
    }
    RemoveNew();
    if (!result.failure) result.failure = SyncFiles(place.folder, changed);
  }

 private:
  // What is in the folder, to the restore's failure where that can't be told.
  std::vector<std::string> Names() {
    auto names = NamesLeavingNoTrace(place.folder);
    if (names) return std::move(*names);
    result.failure = names.Why();
    return {};
  }

  void RemoveTemporaries() {
    std::error_code error;
    for (const std::string& name : Names()) {
      if (IsTemporaryName(name)) fs::remove(place.folder / name, error);
    }
  }

  bool PutBack(const fs::path& from, const std::string& name) {
    if (result.failure) return false;
    const fs::path target = place.folder / name;
    if (LeadsAway(profile, place, name)) {
      result.leftAlone.push_back(target);
      return true;
    }
    result.failure = ReplaceByCopy(from / name, target);
    if (result.failure) return false;
    result.putBack.push_back(target);
    changed.push_back(name);
    return true;
  }

  bool Has(const std::string& name) const {
    return std::any_of(part.files.begin(), part.files.end(),
                       [&](const ListedFile& file) { return file.name == name; });
  }

  bool IsOtherSpelling(const std::string& name) const {
    return std::any_of(part.files.begin(), part.files.end(),
                       [&](const ListedFile& file) { return AreSpellingsOfOne(file.name, name); });
  }

  bool IsOfOrganiser(const std::string& name) const {
    return IsOrganiserFile(name) && BelongsTo(place.kind, name);
  }

  // That there was before the run that was cut off; nullptr if there was none.
  const ListedFile* BeforeCutOffRun(const std::string& name) const {
    const auto& files = before->part.files;
    const auto found = std::find_if(files.begin(), files.end(), [&](const ListedFile& file) {
      return AreSpellingsOfOne(file.name, name);
    });
    return found == files.end() ? nullptr : &*found;
  }

  bool MustGo(const std::string& name, const std::set<std::string>& sets) const {
    if (Has(name)) return false;
    if (IsOtherSpelling(name)) return true;
    if (!IsOfOrganiser(name)) return false;
    return sets.count(SetOfFile(name)) > 0 || (before && BeforeCutOffRun(name) == nullptr);
  }

  // Whether a file that stays isn't as it was before the run that was cut off.
  bool IsLeftCut(const std::string& name) const {
    if (Has(name) || !IsOfOrganiser(name) || !before) return false;
    const ListedFile* file = BeforeCutOffRun(name);
    return file != nullptr && !HaveSameBytes(place.folder / name, before->folder / file->name);
  }

  void RemoveNew() {
    std::set<std::string> sets;
    for (const ListedFile& file : part.files) sets.insert(SetOfFile(file.name));
    sets.erase("");
    const auto names = FilesOf(profile, place);
    if (!names) {
      result.failure = names.Why();
      return;
    }
    for (const std::string& name : *names) {
      const fs::path file = place.folder / name;
      if (!MustGo(name, sets)) {
        if (IsLeftCut(name)) result.leftCut.push_back(file);
        continue;
      }
      std::error_code error;
      fs::remove(file, error);
      if (error) {
        result.failure = SystemFailure(file, error.value());
        return;
      }
      if (!IsOtherSpelling(name)) result.removed.push_back(file);
    }
  }

  const Profile& profile;
  const DataPlace& place;
  const BackupPart& part;
  const std::optional<KeptPart> before;
  Restored& result;
  std::vector<std::string> changed;  // the names of those that were put back
};

}  // namespace

Outcome<std::vector<DataPlace>> PlacesOf(const Profile& profile, const BackupList& list) {
  std::vector<DataPlace> places;
  for (const BackupPart& part : list) {
    if (part.kind == PlaceKind::kData) {
      const auto data = NativeDataFolder(profile);
      if (!data) return data.Why();
      places.push_back({part.kind, profile.DataFolder(), *data});
      continue;
    }
    const auto folder = FolderOfLocation(profile, part.location);
    if (!folder) {
      return Failure{CodePageToUtf8(part.location) + ": not on one of the drives that " +
                     profile.DescriptionFile().string() + " names, and the backup has files of it"};
    }
    places.push_back({part.kind, part.location, *folder});
  }
  return places;
}

Restored RestoreBackup(const Profile& profile, const std::string& name, const BackupList& list,
                       const std::optional<CutOffRun>& cutOff) {
  Restored result;
  const auto places = PlacesOf(profile, list);
  if (!places) {
    result.failure = places.Why();
    return result;
  }
  for (std::size_t i = 0; i < list.size() && !result.failure; ++i) {
    const DataPlace& place = (*places)[i];
    PartRestore part(profile, place, list[i],
                     cutOff ? PartOfPlace(profile, *cutOff, place) : std::nullopt, result);
    part.Run(PartFolder(BackupFolder(profile, name), i));
  }
  return result;
}

}  // namespace pw
