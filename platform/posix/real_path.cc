#include "platform/posix/real_path.h"

#include <filesystem>
#include <system_error>

namespace pw {
namespace {

namespace fs = std::filesystem;

constexpr int kMostLinks = 40;  // as many as the system follows

// The folder that a path's last name is in.
fs::path FolderOf(const fs::path& path) {
  return path.has_parent_path() ? path.parent_path() : fs::path(".");
}

}  // namespace

std::optional<std::string> RealPath(const std::string& path) {
  fs::path at = path;
  for (int links = 0; links < kMostLinks; ++links) {
    std::error_code error;
    const fs::path whole = fs::canonical(at, error);
    if (!error) return whole.native();
    if (error != std::errc::no_such_file_or_directory) return std::nullopt;
    if (!at.has_filename()) at = at.parent_path();
    const fs::path target = fs::read_symlink(at, error);
    if (error) {
      const fs::path folder = fs::canonical(FolderOf(at), error);
      if (error) return std::nullopt;
      return (folder / at.filename()).native();
    }
    at = FolderOf(at) / target;
  }
  return std::nullopt;
}

}  // namespace pw
