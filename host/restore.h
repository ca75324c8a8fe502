#pragma once

#include <filesystem>
#include <optional>
#include <string>
#include <vector>

#include "host/backups.h"
#include "host/outcome.h"
#include "host/profile.h"

namespace pw {

// The places that a backup's parts go back to: the profile's data folder, whatever it was when the
// backup was made, and the others by their organiser's paths.
Outcome<std::vector<DataPlace>> PlacesOf(const Profile& profile, const BackupList& list);

// What a restore has done, all of it on the disk.
struct Restored {
  std::vector<std::filesystem::path> putBack;
  std::vector<std::filesystem::path> removed;    // files that the backup hasn't got
  std::vector<std::filesystem::path> leftAlone;  // now links that lead away from the drives
  std::vector<std::filesystem::path> leftCut;    // files that the backup hasn't got, and that a run
                                                 // which was cut off has changed
  std::optional<Failure> failure;                // where it had to stop
};

// The backup made before a run that was cut off: what it hasn't got the run has made.
struct CutOffRun {
  std::string backup;
  BackupList list;
};

// Puts every file of a backup back, each in one step, with the rights and times that it had. Other
// spellings of its name in the folder go, as the organiser sees one file in them, and so do
// temporary files of a run that was cut off. Of the organiser's files that the backup hasn't got
// those of a calendar or binder of which it has any go, as they would not fit the others, and those
// that a run which was cut off has made; the others stay. The locks of the profile and of the data
// are held.
Restored RestoreBackup(const Profile& profile, const std::string& name, const BackupList& list,
                       const std::optional<CutOffRun>& cutOff);

}  // namespace pw
