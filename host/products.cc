#include "host/products.h"

#include <algorithm>
#include <iterator>

#include "base/text.h"

namespace pw {
namespace {

// A text value as it stands in the file.
std::string TextLine(const char* name, const std::string& value) {
  std::string line = Format("\"%s\"=\"", name);
  for (const char c : value) {
    if (c == '\\' || c == '"') line += '\\';
    line += c;
  }
  return line + "\"\r\n";
}

std::string NumberLine(const char* name, std::uint32_t value) {
  return Format("\"%s\"=dword:%08x\r\n", name, value);
}

std::string KeyLine(const std::string& key) {
  return "\r\n[HKEY_LOCAL_MACHINE\\" + key + "]\r\n";
}

std::string KeyBeside(const Product& product, const char* name) {
  const std::string key = product.mainKey;
  return key.substr(0, key.rfind('\\') + 1) + name;
}

}  // namespace

const Product* FindProduct(std::string_view name) {
  const auto* found = std::find_if(std::begin(kProducts), std::end(kProducts),
                                   [&](const Product& product) { return product.name == name; });
  return found == std::end(kProducts) ? nullptr : found;
}

std::string CalendarKey(const Product& product) {
  return KeyBeside(product, "Calendar-Task");
}

std::string InstallKey(const Product& product) {
  return KeyBeside(product, "Install");
}

std::string FreshRegistry(const Product& product, const OrganiserFacts& facts) {
  std::string text = "REGEDIT4\r\n" + KeyLine(product.mainKey) +
                     NumberLine("PRODUCT", product.number) + TextLine("Data", facts.dataFolder);
  if (!facts.localCity.empty()) text += TextLine("LocalCity", facts.localCity);
  if (facts.isVersion50) {
    // All editions ask this one's key.
    const std::string asked = kProducts[0].mainKey;
    if (product.mainKey != asked) text += KeyLine(asked);
    text += NumberLine("Version", 50);
  }
  if (!facts.calendar.empty()) {
    text += KeyLine(CalendarKey(product)) + TextLine(kDefaultUser, facts.calendar);
  }
  return text;
}

}  // namespace pw
