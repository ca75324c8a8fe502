#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "host/data_places.h"

// What a backup holds, as its file `files.txt` tells, which is written last:
//
//   pairwise backup 1
//   part data C:\Data
//   file 1482 Friends.WMCard
//   part clocks C:\Organiser
//   file 812 CLOCKS.DAT
//   files 2
//
// A part is one folder of the organiser's, by its kind and its path; a file has its size and name.
// The count at the end tells a list that is whole. Percent and line ends in names stand as "%25"
// and "%0A". UTF-8 but for names that aren't.
namespace pw {

struct ListedFile {
  std::string name;
  std::uintmax_t size = 0;
};

struct BackupPart {
  PlaceKind kind = PlaceKind::kData;
  std::string location;  // the organiser's path, in its code page; empty for the profile's folder
  std::vector<ListedFile> files;
};

using BackupList = std::vector<BackupPart>;

std::string RenderBackupList(const BackupList& list);

// Nothing of a text that isn't such a list, or not a whole one.
std::optional<BackupList> ParseBackupList(std::string_view text);

}  // namespace pw
