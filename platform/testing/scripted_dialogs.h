#pragma once

#include <cstddef>
#include <cstdint>
#include <deque>
#include <functional>
#include <optional>
#include <set>
#include <string>
#include <vector>

#include "platform/dialogs.h"

namespace pw {

// Dialogs that answer what a test has laid ready, and remember all that they were to show. Where
// nothing is laid ready they answer as if nobody were there.
class ScriptedDialogs : public Dialogs {
 public:
  ~ScriptedDialogs() override;

  struct Box {
    WindowId parent;
    std::string title;
    std::string text;
    std::uint32_t flags;
    std::string help;  // the context that stood
  };
  struct Sheet {
    WindowId parent;
    std::string title;
    std::vector<std::string> captions;  // of its pages
    std::string help;
  };
  struct FolderChoice {
    WindowId parent;
    std::string title;
    std::string startFolder;
    std::vector<std::string> complaints;
    std::string help;
  };

  // Answers, used up from the front. The sheets' are functions that may show and work the
  // pages first.
  std::deque<BoxAnswer> boxAnswers;
  std::deque<std::function<SheetAnswer(SheetModel&)>> sheetAnswers;

  // Folders that the person names. One that is complained of is followed by the next; when none is
  // left the person gives up.
  std::deque<std::string> folderAnswers;

  // What was shown, in order.
  std::vector<Box> boxes;
  std::vector<Sheet> sheets;
  std::vector<FolderChoice> folderChoices;
  std::vector<std::string> helpShown;

  // Numbers of pictures that the module hasn't got.
  std::set<std::int32_t> missingIcons;

  // The help contexts that stand, the innermost last.
  const std::vector<std::string>& HelpContexts() const { return helpContexts; }

  // Icons that were loaded and not yet destroyed, and the number of one of them.
  std::size_t LiveIcons() const { return icons.size(); }
  std::int32_t IconNumber(IconHandle icon) const;

  BoxAnswer ShowMessage(WindowId parent, const std::string& title, const std::string& text,
                        std::uint32_t flags) override;
  SheetAnswer ShowSheet(WindowId parent, SheetModel& sheet) override;
  std::optional<std::string> ChooseFolder(WindowId parent, const std::string& title,
                                          const std::string& startFolder,
                                          const FolderComplaint& complaint) override;
  void EnterHelp(const std::string& context) override { helpContexts.push_back(context); }
  void LeaveHelp() override;
  void ShowHelp() override { helpShown.push_back(Help()); }
  IconHandle LoadIcon(std::int32_t resource) override;
  void DestroyIcon(IconHandle icon) override;

 private:
  std::string Help() const { return helpContexts.empty() ? "" : helpContexts.back(); }

  std::vector<std::string> helpContexts;
  std::set<IconHandle> icons;
};

}  // namespace pw
