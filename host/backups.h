#pragma once

#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <string>
#include <vector>

#include "host/backup_list.h"
#include "host/outcome.h"
#include "host/profile.h"

// Copies of the files that a run can change (data_places.h), in the profile's folder "backups",
// each in a folder of its own (backup_names.h). There the data folder's files are in `data`, those
// of the other places in `elsewhere-1` and so on, and the list of them all is `files.txt`. Who
// makes one holds the locks of the profile and of the data.
namespace pw {

inline constexpr std::size_t kMostBackups = 10;

// The names, the oldest first; none where there is no folder of backups yet.
Outcome<std::vector<std::string>> BackupsOf(const Profile& profile);

std::filesystem::path BackupFolder(const Profile& profile, const std::string& name);

// Where the files of a backup's part are, by its place in the list.
std::filesystem::path PartFolder(const std::filesystem::path& backup, std::size_t part);

// What a backup holds. Fails, and names the backup, where there is none of that name or it isn't
// whole: it has no list, or a file of it is missing or of another size.
Outcome<BackupList> ReadBackup(const Profile& profile, const std::string& name);

// Whether the profile's places have just the files of a backup, with the same bytes.
bool IsAsInBackup(const Profile& profile, const std::string& name);

struct BackupWishes {
  std::vector<std::string> kept;     // backups that must not go, however old
  std::vector<DataPlace> alsoHolds;  // places beside those of the profile
};

struct MadeBackup {
  std::string name;
  bool isNew = false;  // else nothing has changed since the newest one, and this is it
};

// Copies the files, waits until they have reached the disk, and then removes the oldest backups
// beyond ten. `now` is in seconds since 1970 UTC. What was left of a copy that could not be
// completed, now or before, is removed.
Outcome<MadeBackup> MakeBackup(const Profile& profile, std::int64_t now,
                               const BackupWishes& wishes = {});

}  // namespace pw
