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

// The files of clocks and places, there or not, where the registry has the organiser keep them in
// another folder than the data folder; else none.
std::vector<std::filesystem::path> ClockFilesElsewhere(const Profile& profile);

}  // namespace pw
