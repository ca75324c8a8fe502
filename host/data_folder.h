#pragma once

#include <filesystem>
#include <vector>

#include "host/outcome.h"
#include "host/profile.h"
#include "platform/posix/path_table.h"

namespace pw {

// Where the organiser's paths of a profile lie on this machine.
std::vector<Mount> Mounts(const Profile& profile, bool readOnly);

// The folder of this machine that holds the organiser's files.
Outcome<std::filesystem::path> NativeDataFolder(const Profile& profile);

}  // namespace pw
