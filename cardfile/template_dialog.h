#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "cardfile/card_templates.h"
#include "framework/dialogs.h"
#include "platform/windows.h"

// The page on which the person chooses a template for a new cardfile.
class WMTemplatePage : public CPropertyPage {
 public:
  // Numbers of its controls.
  static constexpr std::int32_t kNewCardfile = 1000;  // the line that names the file
  static constexpr std::int32_t kTemplates = 1001;    // the templates, of which one is chosen
  static constexpr std::int32_t kFields = 1002;       // the fields of that one
  static constexpr std::int32_t kFieldsLabel = 1003;

  // The list's text must outlive the page.
  WMTemplatePage(const std::string& fileName, std::string_view list);

  std::string Caption() override;

  // Choosing another template is told by its list's number.
  void Press(std::int32_t control) override;

  // The field list of the chosen template; empty where there is none to choose.
  std::string_view ChosenFields();

 private:
  void ShowFields();

  std::vector<pw::cardfile::CardTemplate> templates;
};

// Lets the person choose among the templates of a list. Gives the chosen one's field list, or
// nothing if they don't, or the list can't be read or is empty.
std::optional<std::string> ChooseTemplate(pw::WindowId parent, const std::string& fileName,
                                          const std::string& listPath);
