#pragma once

#include <cstdint>
#include <optional>
#include <string>

#include "framework/dialogs.h"
#include "plugin/source_manager.h"

namespace pw::options {

// The help context of all dialogs of the module.
inline constexpr const char* kHelpContext = "WMSource";

// What the three pages have in common. The manager, which isn't owned, must have its
// `ApplicationSource` and `Config`.
class OptionPage : public CPropertyPage {
 public:
  // The organiser's display name.
  std::string Caption() override { return manager.Name().Str(); }
  void Help() override;

 protected:
  // `dialog` is the number of the dialog that the page is.
  OptionPage(WMSourceManager& manager, std::int32_t dialog)
      : CPropertyPage(dialog), manager(manager) {}

  // Lets the person look for a data folder; nothing if they choose none.
  std::optional<std::string> Browse(const std::string& startFolder);

  // A box over the page, with its caption.
  BoxAnswer ShowBox(const std::string& text, std::uint32_t flags);

  // The text of that number, about the organiser.
  std::string TextOfOrganiser(std::uint32_t number);

  WMSourceManager& manager;
};

}  // namespace pw::options
