#include "host/registry_entry.h"

#include "platform/posix/posix_registry.h"

namespace pw {

Outcome<Done> WriteRegistryText(const Profile& profile, const std::string& keyPath,
                                const std::string& name, const std::string& text) {
  PosixRegistry registry({profile.RegistryFile(), RegistryMode::kReadWrite, {}});
  if (const auto key = registry.Create(keyPath)) key->Write(name, TextValue(text));
  if (const auto error = registry.Error()) return Failure{*error};
  if (const auto error = registry.SaveFailure()) return Failure{*error};
  return Done{};
}

}  // namespace pw
