#pragma once

#include <cstdint>

// What the pages and their sheet say and show of each edition.
namespace pw::options {

struct ProductTexts {
  std::int32_t product;
  std::uint32_t sheetTitle;         // number of the text
  std::uint32_t pageTitle;          // the same, of the synchronize and the setup page
  std::int32_t synchronizePicture;  // resource
  std::int32_t setupPicture;        // resource
};

// An edition that isn't known goes as the information manager, as does a code of none.
const ProductTexts& ProductTextsOf(std::int32_t product);

}  // namespace pw::options
