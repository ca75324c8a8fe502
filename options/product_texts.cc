#include "options/product_texts.h"

#include <array>

#include "plugin/discovery.h"
#include "plugin/string_table.h"

namespace pw::options {
namespace {

constexpr ProductTexts kInformationManager = {product::kInformationManager,
                                              strings::kOptionsInformationManager,
                                              strings::kTitleInformationManager, 135, 133};

constexpr std::array<ProductTexts, 3> kOthers = {{
    {product::kWingmate98, strings::kOptionsWingmate98, strings::kTitleWingmate98, 136, 132},
    {product::kDesktop, strings::kOptionsDesktop, strings::kTitleDesktop, 135, 133},
    {product::kWingmate99, strings::kOptionsWingmate99, strings::kTitleWingmate99, 137, 138},
}};

}  // namespace

const ProductTexts& ProductTextsOf(std::int32_t product) {
  for (const ProductTexts& texts : kOthers) {
    if (texts.product == product) return texts;
  }
  return kInformationManager;
}

}  // namespace pw::options
