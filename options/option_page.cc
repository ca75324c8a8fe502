#include "options/option_page.h"

#include "options/required_files.h"
#include "platform/platform.h"
#include "plugin/string_table.h"

namespace pw::options {

void OptionPage::Help() {
  const PWHelp help(kHelpContext, false);
  CPropertyPage::Help();
}

std::optional<std::string> OptionPage::Browse(const std::string& startFolder) {
  const PWHelp help(kHelpContext, false);
  PWStringVector required = RequiredFiles();
  PWBrowseFolder browse(window, manager.Name(), startFolder.c_str(), required);
  if (!browse.DoModal()) return std::nullopt;
  return browse.Folder().Str();
}

BoxAnswer OptionPage::ShowBox(const std::string& text, std::uint32_t flags) {
  return CurrentPlatform().dialogs->ShowMessage(window, Caption(), text, flags);
}

std::string OptionPage::TextOfOrganiser(std::uint32_t number) {
  return FormatString(number, manager.Name());
}

}  // namespace pw::options
