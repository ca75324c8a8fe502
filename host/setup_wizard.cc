#include "host/setup_wizard.h"

#include "framework/application.h"

namespace pw {

void SetupWizard::ResetApplicationSource(PWApplicationSource* source) {
  for (std::uint32_t i = 0; i < source->Types.Count(); ++i) {
    static_cast<PWAppSrcTypeInfo*>(source->Types.At(i))->Categories = PWSourceCategoryVector();
  }
  PWApplication::RefreshCategories(source, true);
}

}  // namespace pw
