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
  std::vector<CheckedFile> files;  // the organiser's, by their names
  std::size_t others = 0;          // what else is there
};

// Reads all files of a folder that the organiser's names tell to be its own, and leaves no trace of
// that where the system lets us. A file that can't be read is a finding.
Outcome<FolderCheck> CheckFolder(const std::filesystem::path& folder);

}  // namespace pw
