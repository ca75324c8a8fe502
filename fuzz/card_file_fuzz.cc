#include <algorithm>
#include <cstdint>
#include <string>
#include <vector>

#include "cardfile/card_file.h"
#include "platform/testing/test_platform.h"

namespace {

constexpr const char* kPath = "C:\\fuzz.WMCard";
constexpr std::uint32_t kCardsLookedAt = 64;
constexpr std::uint32_t kMostCards =
    1024;  // a damaged count promises up to 65,535, which are all alike
constexpr std::uint64_t kLargestSave = 16 << 20;

// What the cards would take in the file: many may claim the same bytes.
std::uint64_t BodyBytes(WMCardFile& file) {
  std::uint64_t bytes = 0;
  for (std::uint32_t i = 0; i < file.CardCount(); ++i) {
    const auto& index = file.Card(i).index;
    bytes += index.textLength + index.notesLength;
  }
  return bytes;
}

}  // namespace

// Any bytes load or fail; what loads is read, changed, saved and loaded again.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  pw::TestPlatform platform;
  platform.files.Put(kPath, {reinterpret_cast<const char*>(data), size});
  WMCardFile file;
  if (file.Load(kPath) != 0 || file.CardCount() > kMostCards) return 0;

  std::vector<std::string> names;
  file.GetFieldNames(names);
  std::vector<std::string> values;
  for (std::uint32_t i = 0; i < std::min(file.CardCount(), kCardsLookedAt); ++i) {
    file.DecodeCard(file.Card(i), values);
    if (values.size() != names.size()) __builtin_trap();
    if (file.FindCard(file.Card(i).index.id) == std::nullopt) __builtin_trap();
  }
  if (file.CardCount() > 1) file.EncodeCard(file.Card(1), values);
  file.DeleteCard(0);
  file.AddCard(values);
  if (BodyBytes(file) > kLargestSave) return 0;
  file.Save();
  WMCardFile again;
  if (again.Load(kPath) != 0) __builtin_trap();
  if (again.CardCount() != (file.CardCount() & 0xFFFF)) __builtin_trap();
  return 0;
}
