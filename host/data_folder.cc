#include "host/data_folder.h"

#include <optional>
#include <string>

#include "framework/config.h"
#include "platform/posix/posix_registry.h"

namespace pw {
namespace {

// What the organiser's main key names; empty where it names nothing.
std::string OrganiserFolderIn(const Profile& profile) {
  const auto mainKey = profile.config.find(PWConfig::kProductKey);
  if (mainKey == profile.config.end()) return {};
  PosixRegistry registry({profile.RegistryFile(), RegistryMode::kReadOnly, {}});
  const auto key = registry.Open(mainKey->second, RegistryAccess::kRead);
  const auto value = key == nullptr ? std::nullopt : key->Read("Data");
  return value && value->type == RegistryType::kText ? value->data : std::string();
}

}  // namespace

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

std::vector<std::filesystem::path> ClockFilesElsewhere(const Profile& profile) {
  const std::string folder = OrganiserFolderIn(profile);
  const auto data = NativeDataFolder(profile);
  if (folder.empty() || !data) return {};
  const PathTable paths(Mounts(profile, false), profile.folder);
  std::vector<std::filesystem::path> files;
  for (const char* name : {"CLOCKS.DAT", "Place List.dat"}) {
    const auto found = paths.Translate(folder + "\\" + name);
    if (!found) continue;
    std::filesystem::path file(found->path);
    std::error_code error;
    if (!std::filesystem::equivalent(file.parent_path(), *data, error)) {
      files.push_back(std::move(file));
    }
  }
  return files;
}

}  // namespace pw
