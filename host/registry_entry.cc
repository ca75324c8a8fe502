#include "host/registry_entry.h"

namespace pw {

PosixRegistry ReadOnlyRegistry(const Profile& profile) {
  return PosixRegistry({profile.RegistryFile(), RegistryMode::kReadOnly, {}});
}

Outcome<Done> WriteRegistryText(const Profile& profile, const std::string& keyPath,
                                const std::string& name, const std::string& text) {
  PosixRegistry registry({profile.RegistryFile(), RegistryMode::kReadWrite, {}});
  if (const auto key = registry.Create(keyPath)) key->Write(name, TextValue(text));
  if (const auto error = registry.Error()) return Failure{*error};
  if (const auto error = registry.SaveFailure()) return Failure{*error};
  return Done{};
}

}  // namespace pw
