#include "host/products.h"

#include <algorithm>
#include <iterator>

#include "base/text.h"

namespace pw {

const Product* FindProduct(std::string_view name) {
  const auto* found = std::find_if(std::begin(kProducts), std::end(kProducts),
                                   [&](const Product& product) { return product.name == name; });
  return found == std::end(kProducts) ? nullptr : found;
}

std::string InstallKey(const Product& product) {
  const std::string key = product.mainKey;
  return key.substr(0, key.rfind('\\') + 1) + "Install";
}

std::string FreshRegistry(const Product& product) {
  return Format("REGEDIT4\r\n\r\n[HKEY_LOCAL_MACHINE\\%s]\r\n\"PRODUCT\"=dword:%08x\r\n",
                product.mainKey, product.number);
}

}  // namespace pw
