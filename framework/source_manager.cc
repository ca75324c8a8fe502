#include "framework/source_manager.h"

#include <string>

#include "base/text.h"
#include "platform/platform.h"

namespace {

// Compares by pieces, so that no file has to fit into memory. False also for what can't be read to
// its end.
bool SameContent(pw::Files& files, const std::string& a, const std::string& b) {
  constexpr std::size_t kPiece = 1 << 20;
  const auto first = files.Open(a, pw::OpenMode::kRead, pw::Sharing::kReadWrite);
  const auto second = files.Open(b, pw::OpenMode::kRead, pw::Sharing::kReadWrite);
  if (first == nullptr || second == nullptr) return false;
  const auto size = first->Size();
  if (!size || second->Size() != size) return false;
  std::uint64_t compared = 0;
  while (compared < *size) {
    const std::string piece = first->Read(kPiece);
    if (piece.empty() || piece != second->Read(kPiece)) return false;
    compared += piece.size();
  }
  return true;
}

// Whether the copy was made and holds what the original holds. One that doesn't isn't left.
bool CopyAndCompare(pw::Files& files, const std::string& from, const std::string& to) {
  if (!files.CopyWithoutOverwriting(from, to)) return false;
  if (SameContent(files, from, to)) return true;
  files.Delete(to);
  return false;
}

}  // namespace

PWSourceManager::~PWSourceManager() {
  if (IconHandle != nullptr) pw::CurrentPlatform().dialogs->DestroyIcon(IconHandle);
  delete Log;
}

PWRESULT PWSourceManager::Backup(const char* target, PWString* out) {
  pw::Files& files = *pw::CurrentPlatform().files;
  const std::string from = Config->String(PWConfig::kDataFolder).Str();
  const std::string to = pw::TextOf(target);
  const auto end = [out](const std::string& path, PWRESULT result) {
    if (out != nullptr) *out = path;
    return result;
  };
  for (const std::string& folder : {from, to}) {
    if (folder.empty() || !files.Exists(folder)) return end(folder, kResultFailed);
  }
  for (const pw::FoundFile& file : files.Find(from + "\\*")) {
    if (file.isFolder) continue;
    const std::string path = from + "\\" + file.name;
    if (!CopyAndCompare(files, path, to + "\\" + file.name)) return end(path, kResultFailed);
  }
  return end(to, kResultOk);
}

PWString PWSourceManager::CategoryHeaderName() {
  return {};
}
