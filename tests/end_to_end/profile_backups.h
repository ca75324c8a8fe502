#pragma once

#include <filesystem>
#include <iterator>
#include <map>
#include <sstream>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "tests/end_to_end/process.h"
#include "tests/platform/temp_folder.h"

namespace pw {

using FilesByName = std::map<std::string, std::string>;

// The regular files of a folder below another.
inline FilesByName FilesIn(const TempFolder& folder, const std::string& below) {
  FilesByName files;
  for (const auto& entry : std::filesystem::directory_iterator(folder.Path() / below)) {
    const std::string name = entry.path().filename().string();
    if (entry.is_regular_file()) files[name] = folder.Get(std::filesystem::path(below) / name);
  }
  return files;
}

// Makes a backup, and gives its name.
inline std::string BackupOf(const std::string& profile) {
  const Finished made = RunPairwise({"-p", profile, "backup"});
  EXPECT_EQ(made.code, 0) << made.messages;
  return made.out.substr(0, made.out.find('\n'));
}

// As `restore` lists them.
inline std::vector<std::string> ListedBackups(const std::string& profile) {
  std::istringstream in(RunPairwise({"-p", profile, "restore"}).out);
  return {std::istream_iterator<std::string>(in), {}};
}

}  // namespace pw
