#include "platform/registry.h"

#include <algorithm>

#include "base/cursor.h"
#include "base/text.h"

namespace pw {

RegistryValue TextValue(std::string_view text) {
  return {RegistryType::kText, std::string(text)};
}

RegistryValue NumberValue(std::uint32_t number) {
  ByteWriter bytes;
  bytes.U32(number);
  return {RegistryType::kNumber, bytes.Release()};
}

bool IsRegistryLine(std::string_view text) {
  return std::none_of(text.begin(), text.end(),
                      [](char c) { return static_cast<unsigned char>(c) < 0x20 && c != '\t'; });
}

std::optional<std::string> ReadText(RegistryKey& key, const std::string& name, std::size_t limit) {
  const auto value = key.Read(name);
  if (!value || value->type != RegistryType::kText || value->data.size() > limit) {
    return std::nullopt;
  }
  return std::string(UpToZero(value->data));
}

std::optional<std::uint32_t> ReadNumber(RegistryKey& key, const std::string& name) {
  const auto value = key.Read(name);
  if (!value || value->type != RegistryType::kNumber || value->data.size() != 4) {
    return std::nullopt;
  }
  return ByteReader(value->data).U32();
}

}  // namespace pw
