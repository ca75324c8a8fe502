#pragma once

#include <cstdint>
#include <string>

#include "options/option_page.h"

namespace pw::options {

// The page of the engine's setup wizard that asks where the organiser's data lies.
class SetupPage : public OptionPage {
 public:
  static constexpr std::int32_t kDialog = 131;

  // The wizard, which owns the page, is told when another folder was taken. It may be null.
  SetupPage(WMSourceManager& manager, CWizardSheet* wizard)
      : OptionPage(manager, kDialog), wizard(wizard) {}

  void Show(WindowId shownIn) override;
  void Press(std::int32_t control) override;

  // Takes the folder, and the install folder with it. Going back takes nothing.
  bool Next() override;
  std::int32_t Picture() override;

 protected:
  void Start() override;

 private:
  CWizardSheet* wizard;
  std::string folder;
  std::string installFolder;
  std::string acceptedFolder;  // that the wizard was told of
};

}  // namespace pw::options
