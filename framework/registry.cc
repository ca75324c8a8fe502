#include "framework/registry.h"

#include "platform/platform.h"

PWRegistry::PWRegistry() = default;
PWRegistry::~PWRegistry() = default;

int PWRegistry::Open(const char* keyPath, bool /*flag*/) {
  key = pw::CurrentPlatform().registry->Open(keyPath == nullptr ? "" : keyPath,
                                             pw::RegistryAccess::kReadWrite);
  return key != nullptr ? 1 : 0;
}

int PWRegistry::Read(const char* name, PWString& out) {
  if (key == nullptr) return 0;
  const auto text = pw::ReadText(*key, name);
  if (!text) return 0;
  out = *text;
  return 1;
}

int PWRegistry::Read(const char* name, std::uint32_t* out) {
  if (key == nullptr) return 0;
  const auto number = pw::ReadNumber(*key, name);
  if (!number) return 0;
  *out = *number;
  return 1;
}

int PWRegistry::Write(const char* name, const char* value) {
  if (key == nullptr) return 0;
  return key->Write(name, pw::TextValue(value == nullptr ? "" : value)) ? 1 : 0;
}

int PWRegistry::Close() {
  if (key == nullptr) return 0;
  key.reset();
  return 1;
}
