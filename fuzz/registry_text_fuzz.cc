#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "platform/posix/registry_text.h"

// Reads anything as a registry export. What is read must be rendered as the bytes that it came
// from; a value that is then set must be read back, every other must be as before, and no other
// line may become better or worse for it.
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

// Where a value may stand.
struct Place {
  std::string path;
  std::string name;
};

// The path in a line that starts a key; some of no key of ours does no harm.
std::string PathIn(std::string_view line, const pw::RegistryFormat& format) {
  line = line.substr(line.find('[') + 1);
  line = line.substr(0, line.rfind(']'));
  const std::size_t root = std::min(line.find('\\'), line.size());
  return pw::InnerToCodePage(line.substr(root), format.encoding);
}

// All places that have a value, and more: found without the reader that is tested.
std::vector<Place> PlacesIn(std::string_view bytes) {
  const pw::RegistryCharacters characters = pw::DecodeRegistryFile(bytes);
  pw::RegistryFormat format;
  format.encoding = characters.encoding;
  std::string_view rest = characters.inner;
  if (rest.starts_with("REGEDIT4")) {
    format.version = pw::RegistryVersion::k4;
  } else if (!characters.hasMark) {
    format.encoding = pw::RegistryEncoding::kUtf8;
  }
  std::vector<Place> places;
  std::string path;
  while (!rest.empty()) {
    const std::string_view line = pw::TakeRegistryLine(rest);
    const std::string_view start = pw::WithoutRegistryBlanks(line);
    if (start.starts_with('[')) path = PathIn(line, format);
    if (!start.starts_with('"') && !start.starts_with('@')) continue;
    const pw::RegistryValueLine value = pw::ParseRegistryValue(line, format);
    if (value.complaint == nullptr && value.nameFits) places.push_back({path, value.name});
  }
  return places;
}

bool IsSame(const RegistryValue* a, const RegistryValue* b) {
  return a == nullptr || b == nullptr ? a == b : *a == *b;
}

// Every value but the one at `changed`, which is one of `after`.
void CheckOthers(const std::vector<Place>& places, const RegistryText& before,
                 const RegistryText& after, const RegistryText& again,
                 const RegistryValue* changed) {
  for (const Place& place : places) {
    const RegistryValue* const now = after.Find(place.path, place.name);
    if (now == changed) continue;
    Require(IsSame(now, before.Find(place.path, place.name)));
    Require(IsSame(now, again.Find(place.path, place.name)));
  }
}

struct Input {
  RegistryText text;
  std::map<std::string, int> complaints;
  std::vector<Place> places;
};

void CheckSet(const Input& input, const char* path, const char* name, const RegistryValue& value) {
  const auto holds = [&](const RegistryText& where) {
    const RegistryValue* const found = where.Find(path, name);
    return where.HasKey(path) && found != nullptr && *found == value;
  };
  RegistryText text = input.text;
  Require(text.Set(path, name, value));
  Require(holds(text));
  std::map<std::string, int> complaintsNow;
  const std::string bytes = text.Render();
  const auto again = Read(bytes, complaintsNow);
  Require(again && holds(*again));
  Require(complaintsNow == input.complaints);
  Require(again->Render() == bytes);
  CheckOthers(input.places, input.text, text, *again, text.Find(path, name));
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size);

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const std::string_view bytes(reinterpret_cast<const char*>(data), size);
  std::map<std::string, int> complaints;
  auto text = Read(bytes, complaints);
  if (!text) return 0;
  Require(bytes.empty() || text->Render() == bytes);
  const Input input{*std::move(text), std::move(complaints), PlacesIn(bytes)};

  // "A\B" and "x" are names that the seeds have, so that values are replaced and added.
  std::string everyByte;
  for (int i = 0; i < 256; ++i) everyByte.push_back(static_cast<char>(i));
  const RegistryValue values[] = {pw::NumberValue(50),
                                  pw::TextValue("\\\"=;[\x80]\\"),
                                  pw::TextValue(everyByte),
                                  {RegistryType::kBinary, everyByte},
                                  {RegistryType::kExpandableText, "%x%"}};
  for (const RegistryValue& value : values) {
    CheckSet(input, "A\\B", "x", value);
    CheckSet(input, "a", "", value);
    CheckSet(input, "New]\\[key", "new \"\\ name", value);
  }
  return 0;
}
