#pragma once

#include <cstdint>
#include <string>

#include "framework/config.h"
#include "options/option_page.h"

namespace pw::options {

// Where the organiser's data lies, and which of the folder's calendars is meant.
class FolderPage : public OptionPage {
 public:
  static constexpr std::int32_t kDialog = 129;

  explicit FolderPage(WMSourceManager& manager) : OptionPage(manager, kDialog) {}

  // Takes folder and calendar from the settings; before the page is shown.
  void Load(PWConfig& config);

  // Puts them into the settings, and what has changed by that also into the manager's own; there an
  // empty calendar leaves the one that was. After the sheet was left by OK.
  void Apply(PWConfig& config);

  void Press(std::int32_t control) override;

  // Says so if no calendar is named, and lets the page be left all the same.
  bool Leave() override;

  // A folder that was browsed for voids how the categories are paired with the engine's; one that
  // was typed doesn't.
  void Accept() override;
  IconHandle Icon() override { return manager.Icon(); }

 protected:
  void Start() override;

 private:
  void FillCalendars(const std::string& ofFolder);

  std::string folder;
  std::string calendarStem;
  bool folderChanged = false;
};

}  // namespace pw::options
