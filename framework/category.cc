#include "framework/category.h"

#include <new>

namespace {

PWRuntimeClass categoryClass("PWSourceCategory",
                             []() -> PWObject* { return new (std::nothrow) PWSourceCategory; });

}  // namespace

void PWSourceCategory::Serialize(PWArchive& archive) {
  Name.Serialize(archive);
  Location.Serialize(archive);
  Flags.Serialize(archive);
  for (std::uint32_t* word : {&AppID, &Word}) {
    auto number = static_cast<std::int32_t>(*word);
    archive.Transfer(number);
    *word = static_cast<std::uint32_t>(number);
  }
  std::int32_t flag = Flag ? 1 : 0;
  archive.Transfer(flag);
  Flag = flag != 0;
}

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
