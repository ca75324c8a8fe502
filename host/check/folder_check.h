#pragma once

#include <cstddef>
#include <filesystem>
#include <string>
#include <vector>

#include "host/check/finding.h"
#include "host/outcome.h"

namespace pw {

struct CheckedFile {
  std::string name;
  FileCheck check;
};

struct FolderCheck {
  std::vector<CheckedFile> files;     // the organiser's, by their names
  std::vector<std::string> together;  // what is wrong between files
  std::size_t others = 0;             // files that aren't the organiser's
};

// Reads all files of a folder that the organiser's names tell to be its own. A file that can't be
// read is a finding.
Outcome<FolderCheck> CheckFolder(const std::filesystem::path& folder);

}  // namespace pw
