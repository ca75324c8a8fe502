#include "platform/testing/memory_registry.h"

#include <utility>

#include "base/codepage.h"

namespace pw {
namespace {

std::string Folded(std::string text) {
  for (char& c : text) c = static_cast<char>(CodePageLower(static_cast<unsigned char>(c)));
  return text;
}

// Without empty parts, so that all spellings of a path are one.
std::string FoldedPath(const std::string& path) {
  std::string plain;
  for (const char c : Folded(path)) {
    if (c != '\\' || (!plain.empty() && plain.back() != '\\')) plain.push_back(c);
  }
  if (plain.ends_with('\\')) plain.pop_back();
  return plain;
}

}  // namespace

class MemoryRegistry::Key : public RegistryKey {
 public:
  Key(MemoryRegistry& owner, std::string path, RegistryAccess access)
      : owner(owner), path(std::move(path)), access(access) {}

  std::optional<RegistryValue> Read(const std::string& name) override {
    return owner.Get(path, name);
  }

  bool Write(const std::string& name, const RegistryValue& value) override {
    if (access == RegistryAccess::kRead || !IsRegistryLine(name)) return false;
    owner.Set(path, name, value);
    return true;
  }

 private:
  MemoryRegistry& owner;
  std::string path;
  RegistryAccess access;
};

void MemoryRegistry::Set(const std::string& path, const std::string& name,
                         const RegistryValue& value) {
  AddKey(path);
  keys[FoldedPath(path)].insert_or_assign(Folded(name), value);
}

std::optional<RegistryValue> MemoryRegistry::Get(const std::string& path,
                                                 const std::string& name) const {
  const auto key = keys.find(FoldedPath(path));
  if (key == keys.end()) return std::nullopt;
  const auto value = key->second.find(Folded(name));
  return value == key->second.end() ? std::nullopt : std::optional(value->second);
}

void MemoryRegistry::AddKey(const std::string& path) {
  const std::string whole = FoldedPath(path);
  for (std::size_t end = whole.find('\\'); end != std::string::npos;
       end = whole.find('\\', end + 1)) {
    keys.try_emplace(whole.substr(0, end));
  }
  keys.try_emplace(whole);
}

bool MemoryRegistry::HasKey(const std::string& path) const {
  const std::string whole = FoldedPath(path);
  return whole.empty() || keys.count(whole) != 0;
}

std::unique_ptr<RegistryKey> MemoryRegistry::Open(const std::string& path, RegistryAccess access) {
  ++opens;
  if (!HasKey(path) || (readOnly && access == RegistryAccess::kReadWrite)) return nullptr;
  return std::make_unique<Key>(*this, path, access);
}

std::unique_ptr<RegistryKey> MemoryRegistry::Create(const std::string& path) {
  ++opens;
  if (readOnly || failCreate || !IsRegistryLine(path)) return nullptr;
  AddKey(path);
  return std::make_unique<Key>(*this, path, RegistryAccess::kReadWrite);
}

}  // namespace pw
