#include "host/location_file.h"

#include <cstddef>

#include "platform/platform.h"

namespace pw {

std::optional<std::string> ReadLocation(const std::string& location, std::uint64_t largest) {
  const auto file = CurrentPlatform().files->Open(location, OpenMode::kRead, Sharing::kReadWrite);
  const auto size = file == nullptr ? std::nullopt : file->Size();
  if (!size || *size > largest) return std::nullopt;
  std::string bytes = file->Read(static_cast<std::size_t>(*size));
  if (bytes.empty() && *size != 0) return std::nullopt;
  return bytes;
}

}  // namespace pw
