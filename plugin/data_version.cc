#include "platform/platform.h"
#include "plugin/discovery.h"
#include "plugin/string_table.h"

// Apart from the rest of discovery, which is a part of the source manager: the stores need no more
// than this.
bool IsVersion50() {
  constexpr std::uint32_t kVersion50 = 50;
  const auto key = pw::CurrentPlatform().registry->Open(LoadString(strings::kVersionKey).Str(),
                                                        pw::RegistryAccess::kRead);
  if (key == nullptr) return false;
  return pw::ReadNumber(*key, LoadString(strings::kVersion).Str()) == kVersion50;
}
