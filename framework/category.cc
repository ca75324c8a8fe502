#include "framework/category.h"

namespace {

PWRuntimeClass categoryClass("PWSourceCategory",
                             []() -> PWObject* { return new PWSourceCategory; });

}  // namespace

PWRuntimeClass* PWSourceCategory::RuntimeClass() {
  return &categoryClass;
}

PWSourceCategory* PWSourceCategoryVector::FindByAppID(std::uint32_t id) const {
  for (std::uint32_t i = 0; i < Count(); ++i) {
    if (At(i)->AppID == id) return At(i);
  }
  return nullptr;
}

PWObject* PWSourceCategoryVector::Clone() {
  return new PWSourceCategoryVector(*this);
}
