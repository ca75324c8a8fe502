#include "platform/posix/path_table.h"

#include <sys/stat.h>

#include <algorithm>

#include "base/codepage.h"
#include "platform/posix/folder_reader.h"
#include "platform/posix/real_path.h"

namespace pw {
namespace {

std::string Join(std::string folder, std::string_view name) {
  if (folder.back() != '/') folder.push_back('/');
  return folder.append(name);
}

bool IsThere(const std::string& path) {
  struct stat status {};
  return lstat(path.c_str(), &status) == 0;
}

// How a name is spelled in a folder; nothing if no spelling of it is there.
std::optional<std::string> SpellingIn(const std::string& folder, const std::string& name) {
  std::string exact = CodePageToUtf8(name);
  if (IsThere(Join(folder, exact))) return exact;
  std::optional<std::string> best;
  FolderReader reader(folder);
  while (const dirent* entry = reader.Next()) {
    const std::string_view native = entry->d_name;
    const auto known = OrganiserName(native);
    if (known && EqualFileNames(*known, name) && (!best || native < *best)) best = native;
  }
  return best;
}

bool IsSame(const PathParts& a, const PathParts& b) {
  return EqualFileNames(a.root, b.root) &&
         std::equal(a.names.begin(), a.names.end(), b.names.begin(), b.names.end(), EqualFileNames);
}

bool StartsWith(const PathParts& parts, const PathParts& prefix) {
  return EqualFileNames(parts.root, prefix.root) && parts.names.size() >= prefix.names.size() &&
         std::equal(prefix.names.begin(), prefix.names.end(), parts.names.begin(), EqualFileNames);
}

// Of real paths.
bool IsIn(std::string_view path, std::string_view folder) {
  if (folder == "/" || path == folder) return true;
  return path.starts_with(folder) && path[folder.size()] == '/';
}

// An empty folder would turn the names behind it into a path from the root.
std::string FolderText(const std::filesystem::path& folder) {
  return folder.empty() ? "." : folder.native();
}

}  // namespace

std::optional<std::string> OrganiserName(std::string_view nativeName) {
  auto name = Utf8ToCodePage(nativeName);
  if (name && name->find('\\') != std::string::npos) return std::nullopt;
  return name;
}

PathTable::PathTable(const std::vector<Mount>& mounts, const std::filesystem::path& currentFolder) {
  Put({PathParts{}, FolderText(currentFolder), false});
  Put({PathParts{"\\", {}, true}, "/", false});
  for (const Mount& mount : mounts) {
    auto prefix = SplitPath(mount.prefix);
    if (prefix) Put({*std::move(prefix), FolderText(mount.folder), mount.readOnly});
  }
}

void PathTable::Put(Place place) {
  const auto before = std::find_if(places.begin(), places.end(), [&](const Place& each) {
    return IsSame(each.prefix, place.prefix);
  });
  if (before == places.end()) {
    places.push_back(std::move(place));
  } else {
    *before = std::move(place);
  }
}

const PathTable::Place* PathTable::FindPlace(const PathParts& parts) const {
  const Place* best = nullptr;
  for (const Place& place : places) {
    const bool longest = best == nullptr || place.prefix.names.size() > best->prefix.names.size();
    if (longest && StartsWith(parts, place.prefix)) best = &place;
  }
  return best;
}

std::optional<NativePath> PathTable::Translate(std::string_view path) const {
  const auto parts = SplitPath(path);
  const Place* place = parts ? FindPlace(*parts) : nullptr;
  if (place == nullptr) return std::nullopt;
  const std::size_t mounted = place->prefix.names.size();
  const bool folderOnly = parts->endsInSeparator || parts->names.size() == mounted;
  std::string native = place->folder;
  bool there = true;
  for (std::size_t i = mounted; i < parts->names.size(); ++i) {
    const std::string& name = parts->names[i];
    const auto spelling = there ? SpellingIn(native, name) : std::nullopt;
    there = spelling.has_value();
    native = Join(std::move(native), spelling ? *spelling : CodePageToUtf8(name));
  }
  if (folderOnly) native = Join(std::move(native), "");
  return NativePath{std::move(native), place->readOnly, place->folder};
}

// The current folder is none for a path that starts elsewhere.
bool PathTable::MayChange(const NativePath& native) const {
  const auto real = native.readOnly ? std::nullopt : RealPath(native.path);
  if (!real) return false;
  std::size_t innermost = 0;
  bool may = false;
  for (const Place& place : places) {
    const bool isCurrent = place.prefix.root.empty() && place.prefix.names.empty();
    if (isCurrent && place.folder != native.start) continue;
    const auto folder = RealPath(place.folder);
    if (!folder || folder->size() < innermost || !IsIn(*real, *folder)) continue;
    may = !place.readOnly || (may && folder->size() == innermost);
    innermost = folder->size();
  }
  return may;
}

}  // namespace pw
