#include "host/unattended_dialogs.h"

#include <algorithm>
#include <vector>

#include "base/codepage.h"
#include "host/text_table.h"

namespace pw {

BoxAnswer UnattendedDialogs::ShowMessage(WindowId /*parent*/, const std::string& title,
                                         const std::string& text, std::uint32_t flags) {
  const bool yesNo = (flags & kBoxButtonsMask) == kBoxYesNo;
  const bool okOnly = (flags & kBoxButtonsMask) == kBoxOk;
  const std::string titled = WithTitle(title, text);
  if (yesNo) {
    Say(titled, "No");
    return BoxAnswer::kNo;
  }
  Say(titled, okOnly ? "OK" : "Cancel");
  return okOnly ? BoxAnswer::kOk : BoxAnswer::kCancel;
}

SheetAnswer UnattendedDialogs::ShowSheet(WindowId /*parent*/, SheetModel& sheet) {
  isDeclined = false;
  if (ChooseIn(sheet)) return SheetAnswer::kOk;
  if (!isDeclined) Say(sheet.Title(), "Cancel");
  return SheetAnswer::kCancel;
}

std::optional<std::string> UnattendedDialogs::ChooseFolder(WindowId /*parent*/,
                                                           const std::string& title,
                                                           const std::string& /*startFolder*/,
                                                           const FolderComplaint& /*complaint*/) {
  Say(title, "Cancel");
  return {};
}

// Whether an entry was chosen, and the page of the list could be left.
bool UnattendedDialogs::ChooseIn(SheetModel& sheet) {
  if (!chooser) return false;
  for (PageModel* page : sheet.Pages()) {
    page->Show(kNoWindow);
    std::vector<DialogControl>& controls = page->Controls();
    const auto list = std::find_if(controls.begin(), controls.end(), [](const DialogControl& c) {
      return c.kind == ControlKind::kList;
    });
    if (list == controls.end()) continue;
    const auto entry = chooser(list->items);
    isDeclined = !entry;
    if (!entry || *entry >= list->items.size()) return false;
    list->selected = *entry;
    page->Press(list->number);
    return page->Next();
  }
  return false;
}

void UnattendedDialogs::Say(const std::string& asked, const char* answer) {
  messages << "pairwise: \"" << OneLine(CodePageToUtf8(asked)) << "\" was answered by " << answer
           << "\n";
}

}  // namespace pw
