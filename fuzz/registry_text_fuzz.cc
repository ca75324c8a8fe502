#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <map>
#include <optional>
#include <string>
#include <string_view>

#include "platform/posix/registry_text.h"

// Reads anything as a registry export. What is read must be rendered as the bytes that it came
// from; a value that is then set must be read back, and no other line may become better or worse
// for it.
namespace {

using pw::RegistryText;
using pw::RegistryType;
using pw::RegistryValue;

void Require(bool holds) {
  if (!holds) std::abort();
}

std::optional<RegistryText> Read(std::string_view bytes, std::map<std::string, int>& complaints) {
  return RegistryText::Parse(bytes, [&](std::size_t, const char* what) { ++complaints[what]; });
}

void CheckSet(RegistryText text, const std::map<std::string, int>& complaints, const char* path,
              const char* name, const RegistryValue& value) {
  const auto holds = [&](const RegistryText& where) {
    const RegistryValue* const found = where.Find(path, name);
    return where.HasKey(path) && found != nullptr && *found == value;
  };
  Require(text.Set(path, name, value));
  Require(holds(text));
  std::map<std::string, int> complaintsNow;
  const std::string bytes = text.Render();
  const auto again = Read(bytes, complaintsNow);
  Require(again && holds(*again));
  Require(complaintsNow == complaints);
  Require(again->Render() == bytes);
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size);

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const std::string_view bytes(reinterpret_cast<const char*>(data), size);
  std::map<std::string, int> complaints;
  auto text = Read(bytes, complaints);
  if (!text) return 0;
  Require(bytes.empty() || text->Render() == bytes);

  // "A\B" and "x" are names that the seeds have, so that values are replaced and added.
  std::string everyByte;
  for (int i = 0; i < 256; ++i) everyByte.push_back(static_cast<char>(i));
  const RegistryValue values[] = {pw::NumberValue(50),
                                  pw::TextValue("\\\"=;[\x80]\\"),
                                  pw::TextValue(everyByte),
                                  {RegistryType::kBinary, everyByte},
                                  {RegistryType::kExpandableText, "%x%"}};
  for (const RegistryValue& value : values) {
    CheckSet(*text, complaints, "A\\B", "x", value);
    CheckSet(*text, complaints, "a", "", value);
    CheckSet(*text, complaints, "New]\\[key", "new \"\\ name", value);
  }
  return 0;
}
