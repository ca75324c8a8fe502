#pragma once

#include "framework/dialogs.h"

namespace pw {

// The engine's setup wizard. Where another folder is taken, what is known of the source's
// categories is forgotten at once; they are to be read again once the wizard has closed.
class SetupWizard : public CWizardSheet {
 public:
  using CWizardSheet::CWizardSheet;

  void ResetApplicationSource(PWApplicationSource* source) override;
};

}  // namespace pw
