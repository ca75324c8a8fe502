#include "host/backups.h"

#include <algorithm>
#include <cerrno>
#include <optional>
#include <string_view>
#include <system_error>
#include <utility>

#include "host/backup_names.h"
#include "host/data_places.h"
#include "host/file_copy.h"
#include "host/native_file.h"

namespace pw {
namespace {

namespace fs = std::filesystem;

constexpr std::string_view kUnfinished = ".unfinished";
constexpr const char* kList = "files.txt";
constexpr std::uintmax_t kLargestList = 64 << 20;

bool IsUnfinished(std::string_view name) {
  return name.ends_with(kUnfinished) &&
         IsBackupName(name.substr(0, name.size() - kUnfinished.size()));
}

void RemoveUnfinished(const Profile& profile) {
  std::vector<fs::path> left;
  std::error_code error;
  for (const auto& entry : fs::directory_iterator(BackupFolder(profile, ""), error)) {
    if (IsUnfinished(entry.path().filename().string())) left.push_back(entry.path());
  }
  for (const fs::path& folder : left) fs::remove_all(folder, error);
}

// The name goes first, so that a removal that is cut off leaves no backup that isn't whole.
void RemoveOldest(const Profile& profile, const std::vector<std::string>& all,
                  const std::vector<std::string>& kept) {
  std::error_code error;
  for (std::size_t i = 0; i + kMostBackups < all.size(); ++i) {
    if (std::find(kept.begin(), kept.end(), all[i]) != kept.end()) continue;
    const fs::path doomed = BackupFolder(profile, all[i] + std::string(kUnfinished));
    fs::rename(BackupFolder(profile, all[i]), doomed, error);
    fs::remove_all(doomed, error);
  }
}

Outcome<std::vector<DataPlace>> PlacesFor(const Profile& profile, const BackupWishes& wishes) {
  auto places = DataPlaces(profile);
  if (!places) return places;
  for (const DataPlace& also : wishes.alsoHolds) AddPlace(also, *places);
  return places;
}

// Whether a place has just the files of a backup's part, with the same bytes.
bool IsUnchanged(const Profile& profile, const DataPlace& place, const BackupPart& part,
                 const fs::path& folder) {
  const auto names = FilesOf(profile, place);
  if (!names || place.kind != part.kind || place.location != part.location) return false;
  const bool hasSameNames =
      std::equal(names->begin(), names->end(), part.files.begin(), part.files.end(),
                 [](const std::string& name, const ListedFile& file) { return name == file.name; });
  return hasSameNames &&
         std::all_of(part.files.begin(), part.files.end(), [&](const ListedFile& file) {
           return HaveSameBytes(place.folder / file.name, folder / file.name);
         });
}

bool HasAllOf(const Profile& profile, const std::string& backup,
              const std::vector<DataPlace>& places) {
  const auto list = ReadBackup(profile, backup);
  if (!list || list->size() != places.size()) return false;
  for (std::size_t i = 0; i < places.size(); ++i) {
    const fs::path folder = PartFolder(BackupFolder(profile, backup), i);
    if (!IsUnchanged(profile, places[i], (*list)[i], folder)) return false;
  }
  return true;
}

std::vector<std::string> NamesOf(const BackupPart& part) {
  std::vector<std::string> names;
  for (const ListedFile& file : part.files) names.push_back(file.name);
  return names;
}

Outcome<BackupPart> CopyPlace(const Profile& profile, const DataPlace& place,
                              const fs::path& folder) {
  const auto names = FilesOf(profile, place);
  if (!names) return names.Why();
  std::error_code error;
  fs::create_directories(folder, error);
  if (error) return SystemFailure(folder, error.value());
  BackupPart part{place.kind, place.location, {}};
  for (const std::string& name : *names) {
    const auto copied = CopyFile(place.folder / name, folder / name, CopyUse::kKept);
    if (!copied) return copied.Why();
    if (!*copied) continue;
    part.files.push_back({name, fs::file_size(folder / name, error)});
    if (error) return SystemFailure(folder / name, error.value());
  }
  if (auto failure = SyncFiles(folder, NamesOf(part))) return *failure;
  return part;
}

// The folder is new.
std::optional<Failure> FillBackup(const Profile& profile, const std::vector<DataPlace>& places,
                                  const fs::path& backup) {
  BackupList list;
  for (std::size_t i = 0; i < places.size(); ++i) {
    auto part = CopyPlace(profile, places[i], PartFolder(backup, i));
    if (!part) return part.Why();
    list.push_back(std::move(*part));
  }
  const auto written = WriteSyncedFile(backup / kList, RenderBackupList(list));
  return written ? std::nullopt : std::optional(written.Why());
}

// Gives it its name once it is whole.
std::optional<Failure> CopyAll(const Profile& profile, const std::vector<DataPlace>& places,
                               const std::string& name) {
  const fs::path made = BackupFolder(profile, name + std::string(kUnfinished));
  std::error_code error;
  auto failure = FillBackup(profile, places, made);
  if (!failure) {
    fs::rename(made, BackupFolder(profile, name), error);
    if (error) failure = SystemFailure(made, error.value());
  }
  if (!failure) failure = SyncFiles(BackupFolder(profile, ""), {});
  if (!failure) failure = SyncFiles(profile.folder, {});
  if (failure) fs::remove_all(made, error);
  return failure;
}

Outcome<MadeBackup> TryToMake(const Profile& profile, std::int64_t now,
                              const BackupWishes& wishes) {
  auto all = BackupsOf(profile);
  if (!all) return all.Why();
  const auto places = PlacesFor(profile, wishes);
  if (!places) return places.Why();
  RemoveUnfinished(profile);
  const std::string latest = all->empty() ? "" : all->back();
  if (!latest.empty() && HasAllOf(profile, latest, *places)) return MadeBackup{latest, false};
  const std::string name = NextBackupName(now, latest);
  if (const auto failure = CopyAll(profile, *places, name)) return *failure;
  all->push_back(name);
  RemoveOldest(profile, *all, wishes.kept);
  return MadeBackup{name, true};
}

std::optional<Failure> WhyNotWhole(const Profile& profile, const std::string& name,
                                   const BackupList& list) {
  for (std::size_t i = 0; i < list.size(); ++i) {
    for (const ListedFile& listed : list[i].files) {
      const fs::path file = PartFolder(BackupFolder(profile, name), i) / listed.name;
      std::error_code error;
      const bool isThere = fs::is_regular_file(file, error);
      if (isThere && fs::file_size(file, error) == listed.size) continue;
      return Failure{"backup " + name + " isn't whole: " + file.string() +
                     (isThere ? " has another size than it had" : " is missing")};
    }
  }
  return std::nullopt;
}

}  // namespace

Outcome<std::vector<std::string>> BackupsOf(const Profile& profile) {
  std::vector<std::string> names;
  std::error_code error;
  const fs::path folder = profile.folder / "backups";
  fs::directory_iterator entries(folder, error);
  if (error == std::errc::no_such_file_or_directory) return names;
  for (; !error && entries != fs::directory_iterator(); entries.increment(error)) {
    const std::string name = entries->path().filename().string();
    std::error_code unknown;
    if (IsBackupName(name) && entries->is_directory(unknown)) names.push_back(name);
  }
  if (error) return SystemFailure(folder, error.value());
  std::sort(names.begin(), names.end());
  return names;
}

fs::path BackupFolder(const Profile& profile, const std::string& name) {
  return profile.folder / "backups" / name;
}

fs::path PartFolder(const fs::path& backup, std::size_t part) {
  return backup / (part == 0 ? "data" : "elsewhere-" + std::to_string(part));
}

Outcome<BackupList> ReadBackup(const Profile& profile, const std::string& name) {
  const auto all = BackupsOf(profile);
  if (!all) return all.Why();
  if (std::find(all->begin(), all->end(), name) == all->end()) {
    return Failure{"there is no backup '" + name + "'; `pairwise restore` lists them"};
  }
  const auto text = ReadNativeFile(BackupFolder(profile, name) / kList, kLargestList);
  auto list = text ? ParseBackupList(*text) : std::nullopt;
  if (!list) {
    return Failure{"backup " + name +
                   " isn't whole: " + (BackupFolder(profile, name) / kList).string() +
                   ", the list of its files, is missing or damaged"};
  }
  if (const auto why = WhyNotWhole(profile, name, *list)) return *why;
  return std::move(*list);
}

bool IsAsInBackup(const Profile& profile, const std::string& name) {
  const auto places = DataPlaces(profile);
  return places && HasAllOf(profile, name, *places);
}

Outcome<MadeBackup> MakeBackup(const Profile& profile, std::int64_t now,
                               const BackupWishes& wishes) {
  auto made = TryToMake(profile, now, wishes);
  if (made) return made;
  return Failure{"no backup could be made, so nothing was done: " + made.Why().message};
}

}  // namespace pw
