#pragma once

#include <cstdint>
#include <optional>
#include <ostream>
#include <string>

#include "platform/dialogs.h"

namespace pw {

// Dialogs of a run that nobody is asked in: each takes the safe answer and says so in one line. The
// exception is a list that the answer was given to beforehand.
class UnattendedDialogs : public DialogsWrapper {
 public:
  // Icons and help come from `target`. Neither is owned.
  UnattendedDialogs(Dialogs& target, std::ostream& messages)
      : DialogsWrapper(target), messages(messages) {}

  // The entry to choose from the first list of any sheet from here on, counted from 0; an entry
  // that the list doesn't have cancels the sheet. Without a value sheets are cancelled.
  void ChooseFromLists(std::optional<std::int32_t> entry) { chosenEntry = entry; }

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
  std::optional<std::int32_t> chosenEntry;
};

}  // namespace pw
