#include "framework/registry.h"

#include "base/text.h"
#include "platform/platform.h"

PWRegistry::PWRegistry() = default;
PWRegistry::~PWRegistry() = default;

int PWRegistry::Open(const char* keyPath, bool /*flag*/) {
  key = pw::CurrentPlatform().registry->Open(pw::TextOf(keyPath), pw::RegistryAccess::kReadWrite);
  return key != nullptr ? 1 : 0;
}

int PWRegistry::Read(const char* name, PWString& out) {
  if (key == nullptr) return 0;
  const auto text = pw::ReadText(*key, pw::TextOf(name));
  if (!text) return 0;
  out = *text;
  return 1;
}

int PWRegistry::Read(const char* name, std::uint32_t* out) {
  if (key == nullptr) return 0;
  const auto number = pw::ReadNumber(*key, pw::TextOf(name));
  if (!number) return 0;
  *out = *number;
  return 1;
}

int PWRegistry::Write(const char* name, const char* value) {
  if (key == nullptr) return 0;
  return key->Write(pw::TextOf(name), pw::TextValue(pw::TextOf(value))) ? 1 : 0;
}

int PWRegistry::Close() {
  if (key == nullptr) return 0;
  key.reset();
  return 1;
}
