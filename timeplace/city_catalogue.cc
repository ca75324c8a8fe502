#include "timeplace/city_catalogue.h"

#include "platform/platform.h"
#include "timeplace/city_index.h"

namespace pw {

CityCatalogue::CityCatalogue(WMCityIndex& index) : byZone(UINT8_MAX + 1U) {
  records.reserve(index.Count());
  for (std::uint32_t number = 1; number <= index.Count(); ++number) {
    const WMCityRecord* read = index.Read(number);
    if (read == nullptr) continue;
    const WMCityRecord& record = records.emplace_back(*read);
    if (byZone[record.zone] == nullptr) byZone[record.zone] = &record;
  }
}

const WMCityRecord* CityCatalogue::ByZone(std::uint8_t zone) const {
  return byZone.empty() ? nullptr : byZone[zone];
}

std::optional<FileState> StateOf(const std::string& path) {
  const auto file = CurrentPlatform().files->Open(path, OpenMode::kRead, Sharing::kReadWrite);
  if (file == nullptr) return std::nullopt;
  const auto size = file->Size();
  const auto lastWrite = file->LastWriteTime();
  if (!size || !lastWrite) return std::nullopt;
  return FileState{path, *size, *lastWrite};
}

}  // namespace pw
