#pragma once

#include <cstddef>
#include <filesystem>
#include <map>
#include <set>
#include <string>
#include <string_view>
#include <vector>

#include "host/outcome.h"

namespace pw {

// Names for the files of one folder, made of what a person called them. What a file system may not
// take becomes "_"; a name is cut to 60 characters, an empty one is "untitled", and of several that
// a file system may not tell apart the later ones get numbers.
class FileNames {
 public:
  // Takes a text of the organiser's code page, gives UTF-8.
  std::string NameFor(std::string_view text);

 private:
  bool Take(const std::string& name);

  std::set<std::string> taken;                // without letter case
  std::map<std::string, std::size_t> counts;  // of those that were asked for
};

// A file to be written, with its folder below the one that a person named, both in UTF-8.
struct NoteFile {
  std::string folder;
  std::string name;
  std::string bytes;
};

// Writes the files into a folder that is made, or is empty: nothing that is there is overwritten.
Outcome<Done> WriteNoteFiles(const std::filesystem::path& folder,
                             const std::vector<NoteFile>& files);

}  // namespace pw
