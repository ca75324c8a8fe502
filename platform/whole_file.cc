#include "platform/whole_file.h"

#include <cstddef>

#include "platform/platform.h"

namespace pw {

std::optional<std::string> ReadWholeFile(const std::string& path, std::uint64_t largest,
                                         OpenMode mode) {
  const auto file = CurrentPlatform().files->Open(path, mode, Sharing::kReadWrite);
  const auto size = file == nullptr ? std::nullopt : file->Size();
  if (!size || *size > largest) return std::nullopt;
  std::string bytes = file->Read(static_cast<std::size_t>(*size));
  // One that gives nothing mustn't be taken for an empty one.
  if (bytes.empty() && *size != 0) return std::nullopt;
  return bytes;
}

bool MakeFile(const std::string& path, std::string_view bytes) {
  const auto file =
      CurrentPlatform().files->Open(path, OpenMode::kCreateAlways, Sharing::kReadWrite);
  return file != nullptr && file->Write(bytes);
}

}  // namespace pw
