#pragma once

#include <stdlib.h>

#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>
#include <string_view>

namespace pw {

// A new folder of this machine, which goes with its owner.
class TempFolder {
 public:
  TempFolder() {
    std::string name = (std::filesystem::temp_directory_path() / "pairwise-XXXXXX").native();
    path = mkdtemp(name.data());
  }
  ~TempFolder() {
    std::error_code failure;
    std::filesystem::remove_all(path, failure);
  }
  TempFolder(const TempFolder&) = delete;
  TempFolder& operator=(const TempFolder&) = delete;

  const std::filesystem::path& Path() const { return path; }

  // Puts a file below the folder, and makes the folders above it.
  void Put(const std::filesystem::path& name, std::string_view bytes) const {
    std::filesystem::create_directories((path / name).parent_path());
    std::ofstream(path / name, std::ios::binary) << bytes;
  }

  // What a file holds; the empty text if it can't be read.
  std::string Get(const std::filesystem::path& name) const {
    std::ifstream file(path / name, std::ios::binary);
    return {std::istreambuf_iterator<char>(file), {}};
  }

 private:
  std::filesystem::path path;
};

}  // namespace pw
