#pragma once

#include <filesystem>
#include <optional>
#include <string>
#include <vector>

#include "host/outcome.h"
#include "host/profile.h"
#include "platform/posix/path_table.h"

namespace pw {

// A path of this machine as a person writes that of a folder.
std::filesystem::path FolderWithoutSlash(const std::string& path);

// Where the organiser's paths of a profile lie on this machine.
std::vector<Mount> Mounts(const Profile& profile, bool readOnly);

// The folder of this machine that holds the organiser's files.
Outcome<std::filesystem::path> NativeDataFolder(const Profile& profile);

// The organiser's path of the folder where the registry has it keep its clocks and places; nothing
// where none is named.
std::optional<std::string> FolderOfClocks(const Profile& profile);

}  // namespace pw
