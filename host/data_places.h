#pragma once

#include <filesystem>
#include <optional>
#include <string>
#include <vector>

#include "host/outcome.h"
#include "host/profile.h"
#include "platform/posix/path_table.h"

// All folders in which a run that writes can change files of the organiser's.
namespace pw {

enum class PlaceKind {
  kData,      // the data folder: every file in it
  kCalendar,  // that of the default user's calendar, whose folder the module takes for the data
              // folder from then on: the files that are the organiser's by their names
  kClocks,    // where the registry has the organiser keep its clocks and places: just those
};

struct DataPlace {
  PlaceKind kind = PlaceKind::kData;
  std::string location;          // the organiser's path; empty for the profile's own folder
  std::filesystem::path folder;  // of this machine; it may be missing
};

// Adds a place unless its folder is among them.
void AddPlace(const DataPlace& added, std::vector<DataPlace>& places);

// The data folder first, and then those that are others.
Outcome<std::vector<DataPlace>> DataPlaces(const Profile& profile);

// The folder of this machine that an organiser's path leads to; nothing if it leads to none.
std::optional<std::filesystem::path> FolderOfLocation(const Profile& profile,
                                                      const std::string& location);

// Whether a file of that name belongs to what a run can change in such a place.
bool BelongsTo(PlaceKind kind, const std::string& name);

// The names of a place's files, sorted. A link to a file counts where it leads to one below a drive
// of the profile or the place itself. A profile that lies in its own data folder doesn't count, nor
// do the temporary files of a run that was cut off. A missing folder other than the data folder has
// no files.
Outcome<std::vector<std::string>> FilesOf(const Profile& profile, const DataPlace& place);

// Whether the name is that of a link which leads away from the profile's drives and the place.
bool LeadsAway(const Profile& profile, const DataPlace& place, const std::string& name);

// Where the organiser's paths lie in a run that writes. Beside the profile's drives this machine
// can be looked at but not changed, by whatever path. Where the data folder is itself a link that
// leads away from them, what it leads to is among them.
std::vector<Mount> WritableMounts(const Profile& profile);

// Waits until what was changed in them has reached the disk, as far as it can.
void SyncPlaces(const Profile& profile);

}  // namespace pw
