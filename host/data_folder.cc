#include "host/data_folder.h"

#include <optional>
#include <string>

namespace pw {

std::vector<Mount> Mounts(const Profile& profile, bool readOnly) {
  std::vector<Mount> mounts;
  for (const ProfileDrive& drive : profile.drives) {
    mounts.push_back({drive.prefix, drive.folder, readOnly});
  }
  return mounts;
}

Outcome<std::filesystem::path> NativeDataFolder(const Profile& profile) {
  const std::string folder = profile.DataFolder();
  const bool hasDrive = folder.size() >= 2 && folder[1] == ':';
  const PathTable paths(Mounts(profile, false), profile.folder);
  const auto found = hasDrive ? paths.Translate(folder) : std::nullopt;
  if (!found) {
    return Failure{profile.DescriptionFile().string() +
                   ": entry 2 of [config] must be the data folder, on one of the drives"};
  }
  return std::filesystem::path(found->path);
}

}  // namespace pw
