#include "host/data_folder.h"

#include "framework/config.h"
#include "host/registry_entry.h"
#include "platform/registry.h"

namespace pw {

std::filesystem::path FolderWithoutSlash(const std::string& path) {
  const bool endsInSlash = path.size() > 1 && path.back() == '/';
  return path.substr(0, path.size() - (endsInSlash ? 1 : 0));
}

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
  return FolderWithoutSlash(found->path);
}

std::optional<std::string> FolderOfClocks(const Profile& profile) {
  PosixRegistry registry = ReadOnlyRegistry(profile);
  const auto key = registry.Open(profile.Setting(PWConfig::kProductKey), RegistryAccess::kRead);
  auto folder = key == nullptr ? std::nullopt : ReadText(*key, "Data");
  return folder && !folder->empty() ? folder : std::nullopt;
}

}  // namespace pw
