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

}  // namespace

const Product* FindProduct(std::string_view name) {
  const auto* found = std::find_if(std::begin(kProducts), std::end(kProducts),
                                   [&](const Product& product) { return product.name == name; });
  return found == std::end(kProducts) ? nullptr : found;
}

std::string InstallKey(const Product& product) {
  const std::string key = product.mainKey;
  return key.substr(0, key.rfind('\\') + 1) + "Install";
}

std::string FreshRegistry(const Product& product, const std::string& dataFolder,
                          const std::string& localCity) {
  std::string text =
      Format("REGEDIT4\r\n\r\n[HKEY_LOCAL_MACHINE\\%s]\r\n\"PRODUCT\"=dword:%08x\r\n",
             product.mainKey, product.number) +
      TextLine("Data", dataFolder);
  if (!localCity.empty()) text += TextLine("LocalCity", localCity);
  return text;
}

}  // namespace pw
