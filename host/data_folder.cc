#include "host/data_folder.h"

#include <cstdint>

#include "framework/config.h"
#include "platform/posix/posix_registry.h"
#include "platform/registry.h"

namespace pw {
namespace {

std::string Entry(const Profile& profile, std::uint32_t id) {
  const auto entry = profile.config.find(id);
  return entry == profile.config.end() ? std::string() : entry->second;
}

PosixRegistry RegistryOf(const Profile& profile) {
  return PosixRegistry({profile.RegistryFile(), RegistryMode::kReadOnly, {}});
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

std::optional<std::string> FolderOfClocks(const Profile& profile) {
  PosixRegistry registry = RegistryOf(profile);
  const auto key = registry.Open(Entry(profile, PWConfig::kProductKey), RegistryAccess::kRead);
  auto folder = key == nullptr ? std::nullopt : ReadText(*key, "Data");
  return folder && !folder->empty() ? folder : std::nullopt;
}

}  // namespace pw
