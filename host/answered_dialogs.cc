#include "host/answered_dialogs.h"

#include <algorithm>
#include <vector>

#include "base/codepage.h"
#include "host/text_table.h"

namespace pw {

void AnsweredDialogs::Refuse(const std::string& why) {
  if (!refusal) refusal = Failure{why};
}

BoxAnswer AnsweredDialogs::ShowMessage(WindowId /*parent*/, const std::string& title,
                                       const std::string& text, std::uint32_t flags) {
  const std::string told = OneLine(CodePageToUtf8(WithTitle(title, text)));
  if ((flags & kBoxButtonsMask) != kBoxYesNo) {
    messages << "pairwise: " << told.substr(0, told.find_last_not_of(' ') + 1) << "\n";
    return SafeAnswer(flags);
  }
  if (answers.isSure) return BoxAnswer::kYes;
  Refuse(told + " (`sure = true` in [synchronize] answers Yes)");
  return BoxAnswer::kNo;
}

SheetAnswer AnsweredDialogs::ShowSheet(WindowId /*parent*/, SheetModel& sheet) {
  for (PageModel* page : sheet.Pages()) {
    page->Show(kNoWindow);
    for (const Answer& answer : answers.given) {
      if (answer.dialog == page->Dialog() && !refusal) Work(*page, answer);
    }
    if (!refusal && page->Next()) continue;
    Refuse(CodePageToUtf8(page->Caption()) + ": the page could not be left");
    return SheetAnswer::kCancel;
  }
  return SheetAnswer::kOk;
}

void AnsweredDialogs::Work(PageModel& page, const Answer& answer) {
  std::vector<DialogControl>& controls = page.Controls();
  const auto found = std::find_if(controls.begin(), controls.end(), [&](const DialogControl& each) {
    return each.number == answer.control;
  });
  if (found == controls.end()) return Refuse(answer.where + ": the page has no such control");
  if (found->kind == ControlKind::kButton) {
    folder = &answer;
    page.Press(answer.control);
    folder = nullptr;
  } else if (found->kind == ControlKind::kChoice) {
    ChooseOne(controls, static_cast<std::size_t>(found - controls.begin()));
  } else {
    found->text = answer.text;
  }
}

std::optional<std::string> AnsweredDialogs::ChooseFolder(WindowId /*parent*/,
                                                         const std::string& /*title*/,
                                                         const std::string& /*startFolder*/,
                                                         const FolderComplaint& complaint) {
  if (folder == nullptr) return std::nullopt;
  const auto wrong = complaint ? complaint(folder->text) : std::nullopt;
  if (!wrong) return folder->text;
  Refuse(folder->where + ": " + OneLine(CodePageToUtf8(*wrong)));
  return std::nullopt;
}

}  // namespace pw
