#include "platform/path.h"

#include "base/text.h"

namespace pw {
namespace {

constexpr std::string_view kSeparators = "\\/";

constexpr bool IsSeparator(char c) {
  return c == '\\' || c == '/';
}

bool StartsWithDrive(std::string_view path) {
  return path.size() >= 2 && path[1] == ':' && AsciiLower(path[0]) >= 'a' &&
         AsciiLower(path[0]) <= 'z';
}

// Takes the root off the front of the path.
std::string TakeRoot(std::string_view& path) {
  std::string root;
  if (StartsWithDrive(path)) {
    root = path.substr(0, 2);
    path.remove_prefix(2);
  } else if (IsSeparator(path.front())) {
    root = "\\";
  }
  return root;
}

void AddName(std::vector<std::string>& names, std::string_view name) {
  if (name.empty() || name == ".") return;
  if (name != "..") {
    names.emplace_back(name);
  } else if (!names.empty()) {
    names.pop_back();
  }
}

}  // namespace

std::optional<PathParts> SplitPath(std::string_view path) {
  if (path.empty() || path.find('\0') != std::string_view::npos) return std::nullopt;
  if (path.size() >= 2 && IsSeparator(path[0]) && IsSeparator(path[1])) return std::nullopt;
  PathParts parts;
  parts.endsInSeparator = IsSeparator(path.back());
  parts.root = TakeRoot(path);
  while (!path.empty()) {
    const std::size_t end = path.find_first_of(kSeparators);
    AddName(parts.names, path.substr(0, end));
    path.remove_prefix(end == std::string_view::npos ? path.size() : end + 1);
  }
  return parts;
}

std::string PlainPath(std::string_view path) {
  const auto parts = SplitPath(path);
  if (!parts) return std::string(path);
  std::string plain = parts->root;
  for (const std::string& name : parts->names) {
    if (!plain.empty() && plain.back() != '\\') plain += '\\';
    plain += name;
  }
  return plain;
}

PatternParts SplitPattern(std::string_view pattern) {
  const std::size_t separator = pattern.find_last_of(kSeparators);
  std::size_t folderSize = separator == std::string_view::npos ? 0 : separator + 1;
  if (folderSize == 0 && StartsWithDrive(pattern)) folderSize = 2;
  const std::string_view folder = folderSize == 0 ? "." : pattern.substr(0, folderSize);
  return {std::string(folder), std::string(pattern.substr(folderSize))};
}

}  // namespace pw
