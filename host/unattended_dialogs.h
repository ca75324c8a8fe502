#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <optional>
#include <ostream>
#include <string>
#include <utility>
#include <vector>

#include "platform/dialogs.h"

namespace pw {

// Dialogs of a run that nobody is asked in: each takes the safe answer and says so in one line. The
// exception is a list that the answer was given to beforehand.
class UnattendedDialogs : public DialogsWrapper {
 public:
  // Icons and help come from `target`. Neither is owned.
  UnattendedDialogs(Dialogs& target, std::ostream& messages)
      : DialogsWrapper(target), messages(messages) {}

  // Who chooses from the first list of any sheet from here on: gets the entries, in the organiser's
  // code page, and gives the place of one, counted from 0. A place that the list doesn't have, or
  // none, cancels the sheet, as does having nobody to choose. Who gives none says why.
  using Chooser = std::function<std::optional<std::size_t>(const std::vector<std::string>&)>;
  void ChooseFromLists(Chooser choose) { chooser = std::move(choose); }

  BoxAnswer ShowMessage(WindowId parent, const std::string& title, const std::string& text,
                        std::uint32_t flags) override;
  SheetAnswer ShowSheet(WindowId parent, SheetModel& sheet) override;
  std::optional<std::string> ChooseFolder(WindowId parent, const std::string& title,
                                          const std::string& startFolder,
                                          const FolderComplaint& complaint) override;

 private:
  bool ChooseIn(SheetModel& sheet);
  void Say(const std::string& asked, const char* answer);

  std::ostream& messages;
  Chooser chooser;
  bool isDeclined = false;  // nothing was chosen from the last list
};

}  // namespace pw
