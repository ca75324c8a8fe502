#include "framework/source_manager.h"

#include <string>

#include "platform/platform.h"

namespace {

// Compares by pieces, so that no file has to fit into memory.
bool SameContent(pw::Files& files, const std::string& a, const std::string& b) {
  constexpr std::size_t kPiece = 1 << 20;
  const auto first = files.Open(a, pw::OpenMode::kRead, pw::Sharing::kReadWrite);
  const auto second = files.Open(b, pw::OpenMode::kRead, pw::Sharing::kReadWrite);
  if (first == nullptr || second == nullptr || first->Size() != second->Size()) return false;
  for (;;) {
    const std::string piece = first->Read(kPiece);
    if (piece != second->Read(kPiece)) return false;
    if (piece.size() < kPiece) return true;
  }
}

}  // namespace

PWSourceManager::~PWSourceManager() {
  if (IconHandle != nullptr) pw::CurrentPlatform().dialogs->DestroyIcon(IconHandle);
  delete Log;
}

PWRESULT PWSourceManager::Backup(const char* target, PWString* out) {
  pw::Files& files = *pw::CurrentPlatform().files;
  const std::string from = Config->String(PWConfig::kDataFolder).Str() + "\\";
  const std::string to = std::string(target) + "\\";
  for (const pw::FoundFile& file : files.Find(from + "*")) {
    if (file.isFolder) continue;
    const bool copied = files.CopyWithoutOverwriting(from + file.name, to + file.name);
    if (copied && SameContent(files, from + file.name, to + file.name)) continue;
    if (out != nullptr) *out = from + file.name;
    return kResultFailed;
  }
  if (out != nullptr) *out = target;
  return kResultOk;
}

PWString PWSourceManager::CategoryHeaderName() {
  return {};
}
