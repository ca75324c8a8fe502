#include "platform/testing/memory_files.h"

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <utility>

#include "base/codepage.h"

namespace pw {
namespace {

std::string Folded(std::string_view name) {
  std::string lower(name);
  for (char& c : lower) c = static_cast<char>(CodePageLower(static_cast<unsigned char>(c)));
  return lower;
}

// One text for all spellings of a path.
std::string KeyOf(const PathParts& parts) {
  std::string key = Folded(parts.root);
  for (const std::string& name : parts.names) key.append(1, '\\').append(Folded(name));
  return key;
}

[[noreturn]] void EndTest(const std::string& path, const char* why) {
  std::fprintf(stderr, "a test's path \"%s\" %s\n", path.c_str(), why);
  std::abort();
}

std::shared_ptr<MemoryNode> NewNode(std::string_view name, bool isFolder) {
  auto node = std::make_shared<MemoryNode>();
  node->name = name;
  node->isFolder = isFolder;
  return node;
}

std::shared_ptr<MemoryNode> ChildOf(const MemoryNode& folder, std::string_view name) {
  const auto found = folder.children.find(Folded(name));
  return found == folder.children.end() ? nullptr : found->second;
}

std::shared_ptr<MemoryNode> AddChild(MemoryNode& folder, std::string_view name, bool isFolder) {
  auto& child = folder.children[Folded(name)];
  if (child == nullptr) child = NewNode(name, isFolder);
  return child;
}

// The node that some names lead to from a root; null if there is none.
std::shared_ptr<MemoryNode> Walk(const MemoryNode& top, const std::string& root,
                                 const std::string* names, std::size_t count) {
  auto node = ChildOf(top, root);
  for (std::size_t i = 0; node != nullptr && i < count; ++i) node = ChildOf(*node, names[i]);
  return node;
}

}  // namespace

MemoryFiles::MemoryFiles(Clock& clock) : disk(clock) {
  AddChild(top, "", true);
  AddChild(top, "\\", true);
}

MemoryFiles::Node MemoryFiles::Lookup(const std::string& path) const {
  const auto parts = SplitPath(path);
  if (!parts) return nullptr;
  auto node = Walk(top, parts->root, parts->names.data(), parts->names.size());
  if (node != nullptr && parts->endsInSeparator && !node->isFolder) return nullptr;
  return node;
}

MemoryFiles::Node MemoryFiles::LookupFolderOf(const PathParts& parts) const {
  if (parts.names.empty()) return nullptr;
  auto node = Walk(top, parts.root, parts.names.data(), parts.names.size() - 1);
  return node != nullptr && node->isFolder ? node : nullptr;
}

MemoryFiles::Node MemoryFiles::Existing(const std::string& path) const {
  auto node = Lookup(path);
  if (node == nullptr) EndTest(path, "names nothing");
  return node;
}

MemoryFiles::Node MemoryFiles::Make(const std::string& path, bool folder) {
  const auto parts = SplitPath(path);
  if (!parts) EndTest(path, "can't be any file's");
  auto node = AddChild(top, parts->root, true);
  for (const std::string& name : parts->names) {
    if (!node->isFolder) EndTest(path, "leads through a file");
    node = AddChild(*node, name, folder || &name != &parts->names.back());
  }
  if (node->isFolder != folder) EndTest(path, "is there as the other kind");
  return node;
}

MemoryFiles::Node MemoryFiles::Create(const std::string& path) {
  const auto parts = SplitPath(path);
  if (!parts || parts->endsInSeparator) return nullptr;
  const auto folder = LookupFolderOf(*parts);
  if (folder == nullptr || ChildOf(*folder, parts->names.back()) != nullptr) return nullptr;
  auto node = AddChild(*folder, parts->names.back(), false);
  node->lastWrite = disk.Now();
  return node;
}

void MemoryFiles::Put(const std::string& path, std::string_view bytes) {
  const auto node = Make(path, false);
  node->bytes = bytes;
  node->lastWrite = disk.Now();
}

void MemoryFiles::PutFolder(const std::string& path) {
  Make(path, true);
}

std::optional<std::string> MemoryFiles::Get(const std::string& path) const {
  const auto node = Lookup(path);
  if (node == nullptr || node->isFolder) return std::nullopt;
  return node->bytes;
}

void MemoryFiles::SetReadOnly(const std::string& path, bool readOnly) {
  Existing(path)->readOnly = readOnly;
}

void MemoryFiles::SetLastWrite(const std::string& path, std::int64_t nanoseconds) {
  Existing(path)->lastWrite = nanoseconds;
}

void MemoryFiles::FailOpen(const std::string& path) {
  const auto parts = SplitPath(path);
  if (!parts) EndTest(path, "can't be any file's");
  failing.insert(KeyOf(*parts));
}

void MemoryFiles::StopFailing() {
  failing.clear();
  disk.bytesLeft.reset();
  disk.truncateFails = false;
}

bool MemoryFiles::OpenFails(const std::string& path) const {
  const auto parts = SplitPath(path);
  return parts && failing.count(KeyOf(*parts)) != 0;
}

std::unique_ptr<File> MemoryFiles::Open(const std::string& path, OpenMode mode, Sharing sharing) {
  ++opens;
  if (OpenFails(path)) return nullptr;
  auto node = Lookup(path);
  const bool makes = mode == OpenMode::kOpenAlways || mode == OpenMode::kCreateAlways;
  if (node == nullptr && makes) node = Create(path);
  const bool writes = mode != OpenMode::kRead;
  if (node == nullptr || node->isFolder || (writes && node->readOnly)) return nullptr;
  auto file = MemoryFile::Open(std::move(node), disk, writes, sharing);
  if (file != nullptr && mode == OpenMode::kCreateAlways && !file->Truncate()) return nullptr;
  return file;
}

bool MemoryFiles::Exists(const std::string& path) {
  return Lookup(path) != nullptr;
}

bool MemoryFiles::IsReadableAndWritable(const std::string& path) {
  const auto node = Lookup(path);
  return node != nullptr && !node->readOnly;
}

bool MemoryFiles::Delete(const std::string& path) {
  const auto node = Lookup(path);
  if (node == nullptr || node->isFolder || node->readOnly || node->open.all > 0) return false;
  LookupFolderOf(*SplitPath(path))->children.erase(Folded(node->name));
  return true;
}

bool MemoryFiles::CopyWithoutOverwriting(const std::string& from, const std::string& to) {
  const auto source = Open(from, OpenMode::kRead, Sharing::kReadWrite);
  if (source == nullptr || OpenFails(to)) return false;
  const auto node = Create(to);
  if (node == nullptr) return false;
  if (!MemoryFile::Open(node, disk, true, Sharing::kNone)->Write(source->Read(SIZE_MAX))) {
    Delete(to);
    return false;
  }
  node->readOnly = Lookup(from)->readOnly;
  return true;
}

std::vector<FoundFile> MemoryFiles::Find(const std::string& pattern) {
  const PatternParts parts = SplitPattern(pattern);
  const auto folder = Lookup(parts.folder);
  std::vector<FoundFile> found;
  if (folder == nullptr) return found;
  for (const auto& [key, node] : folder->children) {
    if (MatchesPattern(node->name, parts.names)) found.push_back({node->name, node->isFolder});
  }
  std::sort(found.begin(), found.end(), ComesBefore);
  return found;
}

}  // namespace pw
