#include "host/restore.h"

#include <map>
#include <optional>
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

// The files of a part of a backup, by their names. It must outlive this.
class FilesByName {
 public:
  explicit FilesByName(const BackupPart& part) {
    for (const ListedFile& file : part.files) {
      names.insert(file.name);
      if (const auto key = KeyOf(file.name)) spellings.emplace(*key, &file);
    }
  }

  bool Has(const std::string& name) const { return names.count(name) > 0; }

  // One that the organiser knows by the same name; nullptr if there is none.
  const ListedFile* InAnySpelling(const std::string& name) const {
    const auto key = KeyOf(name);
    const auto found = key ? spellings.find(*key) : spellings.end();
    return found == spellings.end() ? nullptr : found->second;
  }

 private:
  // The same for all spellings; nothing for a name that the organiser can't have.
  static std::optional<std::string> KeyOf(const std::string& name) {
    auto key = OrganiserName(name);
    if (!key) return key;
    for (char& c : *key) c = static_cast<char>(CodePageLower(static_cast<unsigned char>(c)));
    return key;
  }

  std::set<std::string> names;
  std::map<std::string, const ListedFile*> spellings;
};

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
      : profile(profile),
        place(place),
        part(part),
        listed(part),
        before(std::move(before)),
        result(result) {
    if (this->before) listedBefore.emplace(this->before->part);
  }

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

  bool IsOfOrganiser(const std::string& name) const {
    return IsOrganiserFile(name) && BelongsTo(place.kind, name);
  }

  bool MustGo(const std::string& name, const std::set<std::string>& sets) const {
    if (listed.Has(name)) return false;
    if (listed.InAnySpelling(name) != nullptr) return true;
    if (!IsOfOrganiser(name)) return false;
    const bool isNew = listedBefore && listedBefore->InAnySpelling(name) == nullptr;
    return isNew || sets.count(SetOfFile(name)) > 0;
  }

  // Whether a file that stays isn't as it was before the run that was cut off.
  bool IsLeftCut(const std::string& name) const {
    if (listed.Has(name) || !IsOfOrganiser(name) || !listedBefore) return false;
    const ListedFile* file = listedBefore->InAnySpelling(name);
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
      if (listed.InAnySpelling(name) == nullptr) result.removed.push_back(file);
    }
  }

  const Profile& profile;
  const DataPlace& place;
  const BackupPart& part;
  const FilesByName listed;
  const std::optional<KeptPart> before;
  std::optional<FilesByName> listedBefore;  // of `before`
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
