#pragma once

#include <cstddef>
#include <filesystem>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "platform/path.h"

namespace pw {

// A part of the organiser's file tree and the folder of this machine that stands for it.
struct Mount {
  // "C:" for a drive, "C:\Data" or "\Data" for a folder, also in another's place.
  std::string prefix;
  std::filesystem::path folder;
  bool readOnly = false;  // nothing may be changed by a path under the prefix
};

struct NativePath {
  std::string path;  // ends in "/" where only a folder can be meant
  bool readOnly = false;
  std::string start;  // the folder that it starts at
};

// Translates the organiser's paths to this machine's; nothing else does.
//
// Where a path starts:
// - The mount with the longest prefix, in whole names and whatever their case, takes it; of two
//   mounts with one prefix the later. ".." is worked out before, and so leads out of a mounted
//   folder to its neighbours as the organiser sees them, but never above the drive, nor above the
//   current folder.
// - A drive that nothing is mounted for doesn't exist.
// - A path that starts with a separator of either kind, but no drive, starts at the root of this
//   machine.
// - Any other path starts at the current folder.
//
// Each name is taken as it is written if that is in its folder, and else as the first, in byte
// order, of those in the folder that differ from it in case alone. From the first name that isn't
// there on, the path keeps the spelling given. Names of this machine that aren't UTF-8, have
// characters outside of code page 1252, or hold a backslash, are never met. Dots and blanks at a
// name's end count.
//
// Links of this machine are followed, wherever they lead, for a look. What may be changed goes by
// where it really lies (see `MayChange`), so that no link is a way to what isn't to be changed. A
// file with several names of its own is one that lies in several folders.
//
// Nothing is remembered of the folders, so that the answer is always true now.
class PathTable {
 public:
  // `currentFolder` is a folder of this machine, and like those of the mounts may be relative to
  // the process's own. Mounts whose prefix is no path of the organiser are passed over.
  PathTable(const std::vector<Mount>& mounts, const std::filesystem::path& currentFolder);

  // Nothing if no file can have this path. That there is a path doesn't mean that there is a file.
  std::optional<NativePath> Translate(std::string_view path) const;

  // Whether what a path leads to may be changed, or be made: neither the path nor the innermost of
  // the folders in which it really lies is read-only. The folders are those of the mounts, the
  // machine's root, and the one that the path starts at, each by where it really is itself; where
  // two are the same one that may be changed suffices. False also where it lies nowhere, since a
  // folder is missing.
  bool MayChange(const NativePath& native) const;

 private:
  struct Place {
    PathParts prefix;
    std::string folder;
    bool readOnly;
  };

  void Put(Place place);
  const Place* FindPlace(const PathParts& parts) const;

  std::vector<Place> places;
};

// The name under which a file of this machine is known to the organiser, or nothing if it is one
// that it can never meet.
std::optional<std::string> OrganiserName(std::string_view nativeName);

}  // namespace pw
