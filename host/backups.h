#pragma once

#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <string>
#include <vector>

#include "host/outcome.h"
#include "host/profile.h"

// Copies of a profile's data folder, in its folder "backups", each in one that is named by its
// moment: "2026-11-25T21-49-01". Clocks and places that the organiser keeps elsewhere stand in its
// folder "organiser". Who makes or restores one holds the profile's lock.
namespace pw {

inline constexpr std::size_t kMostBackups = 10;

// The names, the oldest first.
std::vector<std::string> BackupsOf(const Profile& profile);

std::filesystem::path BackupFolder(const Profile& profile, const std::string& name);

// Copies the files, and then removes the oldest backups beyond ten, but for `kept`. `now` is in
// seconds since 1970 UTC. Gives its name. A copy that could not be completed isn't left behind.
Outcome<std::string> MakeBackup(const Profile& profile, std::int64_t now,
                                const std::string& kept = "");

// Puts every file of a backup back, each in one step. Files that it hasn't got stay. Gives how many
// were put back.
Outcome<std::size_t> RestoreBackup(const Profile& profile, const std::string& name);

}  // namespace pw
