#include "host/data_places.h"

#include <algorithm>
#include <iterator>
#include <string_view>
#include <system_error>
#include <utility>

#include "host/data_folder.h"
#include "host/default_calendar.h"
#include "host/native_file.h"
#include "host/organiser_files.h"
#include "host/traceless.h"

namespace pw {
namespace {

namespace fs = std::filesystem;

constexpr std::string_view kOfTheProfile[] = {kDescriptionName, "registry.reg", "registry.reg.lock",
                                              "profile.lock", "run.unfinished"};

bool IsIn(const fs::path& file, const fs::path& folder) {
  std::error_code error;
  const fs::path whole = fs::canonical(folder, error);
  if (error) return false;
  return std::mismatch(whole.begin(), whole.end(), file.begin(), file.end()).first == whole.end();
}

bool IsCounted(const Profile& profile, const DataPlace& place, bool isOfProfile,
               const std::string& name) {
  if (!BelongsTo(place.kind, name) || IsTemporaryName(name)) return false;
  const bool isOwn = isOfProfile && std::find(std::begin(kOfTheProfile), std::end(kOfTheProfile),
                                              name) != std::end(kOfTheProfile);
  std::error_code error;
  return !isOwn && fs::is_regular_file(place.folder / name, error) &&
         !LeadsAway(profile, place, name);
}

void AddLocation(const Profile& profile, PlaceKind kind, const std::optional<std::string>& location,
                 std::vector<DataPlace>& places) {
  const auto folder = location ? FolderOfLocation(profile, *location) : std::nullopt;
  if (folder) AddPlace({kind, *location, *folder}, places);
}

}  // namespace

std::optional<fs::path> FolderOfLocation(const Profile& profile, const std::string& location) {
  if (location.empty()) return profile.folder;
  const PathTable paths(Mounts(profile, false), profile.folder);
  const auto found = paths.Translate(location);
  return found ? std::optional(FolderWithoutSlash(found->path)) : std::nullopt;
}

void AddPlace(const DataPlace& added, std::vector<DataPlace>& places) {
  const bool isThere = std::any_of(places.begin(), places.end(), [&](const DataPlace& place) {
    std::error_code error;
    return place.folder == added.folder || fs::equivalent(place.folder, added.folder, error);
  });
  if (!isThere) places.push_back(added);
}

Outcome<std::vector<DataPlace>> DataPlaces(const Profile& profile) {
  const auto data = NativeDataFolder(profile);
  if (!data) return data.Why();
  std::vector<DataPlace> places = {{PlaceKind::kData, profile.DataFolder(), *data}};
  AddLocation(profile, PlaceKind::kCalendar, FolderOfDefaultCalendar(profile), places);
  AddLocation(profile, PlaceKind::kClocks, FolderOfClocks(profile), places);
  return places;
}

bool BelongsTo(PlaceKind kind, const std::string& name) {
  if (kind == PlaceKind::kCalendar) return IsOrganiserFile(name);
  return kind == PlaceKind::kData || IsClockFile(name);
}

Outcome<std::vector<std::string>> FilesOf(const Profile& profile, const DataPlace& place) {
  std::error_code error;
  if (place.kind != PlaceKind::kData && !fs::exists(place.folder, error)) {
    return std::vector<std::string>();
  }
  auto names = NamesLeavingNoTrace(place.folder);
  if (!names) return names.Why();
  const bool isOfProfile = fs::equivalent(place.folder, profile.folder, error);
  names->erase(std::remove_if(names->begin(), names->end(),
                              [&](const std::string& name) {
                                return !IsCounted(profile, place, isOfProfile, name);
                              }),
               names->end());
  std::sort(names->begin(), names->end());
  return std::move(*names);
}

bool LeadsAway(const Profile& profile, const DataPlace& place, const std::string& name) {
  std::error_code error;
  if (!fs::is_symlink(place.folder / name, error)) return false;
  const fs::path target = fs::weakly_canonical(place.folder / name, error);
  if (error || IsIn(target, place.folder)) return error.value() != 0;
  return std::none_of(profile.drives.begin(), profile.drives.end(),
                      [&](const ProfileDrive& drive) { return IsIn(target, drive.folder); });
}

std::vector<Mount> WritableMounts(const Profile& profile) {
  std::vector<Mount> mounts = {{"\\", "/", true}};
  for (Mount& drive : Mounts(profile, false)) mounts.push_back(std::move(drive));
  const auto data = NativeDataFolder(profile);
  if (data) mounts.push_back({profile.DataFolder(), *data, false});
  return mounts;
}

void SyncPlaces(const Profile& profile) {
  const auto places = DataPlaces(profile);
  if (!places) return;
  for (const DataPlace& place : *places) {
    const auto names = FilesOf(profile, place);
    if (names) SyncFiles(place.folder, *names);
  }
}

}  // namespace pw
