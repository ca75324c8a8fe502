#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "platform/windows.h"

// All that asks the person at the machine something, or shows them a picture. All operations are
// called on the engine's one thread, also those by which a dialog asks back.
namespace pw {

// Flags of a message box: one of the sets of buttons, one of the pictures, which button is the
// default.
inline constexpr std::uint32_t kBoxOk = 0x000;
inline constexpr std::uint32_t kBoxOkCancel = 0x001;
inline constexpr std::uint32_t kBoxYesNo = 0x004;
inline constexpr std::uint32_t kBoxWarning = 0x030;
inline constexpr std::uint32_t kBoxQuestion = 0x020;
inline constexpr std::uint32_t kBoxSecondButtonIsDefault = 0x100;
inline constexpr std::uint32_t kBoxButtonsMask = 0x00F;

enum class BoxAnswer { kOk = 1, kCancel = 2, kYes = 6, kNo = 7 };

// The answer that changes nothing, for where nobody can give one.
constexpr BoxAnswer SafeAnswer(std::uint32_t flags) {
  if ((flags & kBoxButtonsMask) == kBoxYesNo) return BoxAnswer::kNo;
  if ((flags & kBoxButtonsMask) == kBoxOkCancel) return BoxAnswer::kCancel;
  return BoxAnswer::kOk;
}

// How a box reads in a run of text: "Title: text", or the text alone.
inline std::string WithTitle(const std::string& title, const std::string& text) {
  return title.empty() ? text : title + ": " + text;
}

enum class ControlKind {
  kLabel,
  kChoice,  // those that stand side by side are one group
  kText,
  kList,
  kCombo,  // a text field that offers a list
  kButton,
};

// A numbered control of a page. What it holds is the page's; the dialogs show it and change `text`,
// `chosen` or `selected` as the person says.
struct DialogControl {
  std::int32_t number = 0;
  ControlKind kind = ControlKind::kLabel;
  std::string text;                     // a label's text, a text field's or a combo's content
  std::vector<std::string> items;       // of a list or a combo; several may be equal
  bool chosen = false;                  // of one choice in a group
  std::optional<std::size_t> selected;  // of a list: the place of its chosen item, from 0
};

// Chooses one choice of its group, and with that none of the others there.
inline void ChooseOne(std::vector<DialogControl>& controls, std::size_t index) {
  const auto isChoice = [&](std::size_t i) { return controls[i].kind == ControlKind::kChoice; };
  std::size_t first = index;
  while (first > 0 && isChoice(first - 1)) --first;
  for (std::size_t i = first; i < controls.size() && isChoice(i); ++i) {
    controls[i].chosen = i == index;
  }
}

struct IconResource;               // whatever the platform keeps of a picture
using IconHandle = IconResource*;  // null is no picture

// A page of a sheet, as the dialogs see it.
class PageModel {
 public:
  virtual ~PageModel() = default;
  virtual std::string Caption() = 0;

  // Which of the module's dialogs the page is, by the number of its resource; 0 for one without.
  virtual std::int32_t Dialog() { return 0; }

  // The page comes up in this window, which is `kNoWindow` where there are none; called each time,
  // before the person can do anything on it.
  virtual void Show(WindowId /*window*/) {}
  virtual std::vector<DialogControl>& Controls() = 0;

  // A button was pressed, or an item of a list was chosen.
  virtual void Press(std::int32_t control) = 0;

  // The person goes to another page or says OK. False: the page stays open.
  virtual bool Leave() = 0;

  // The same where it is forward that they go, which in a wizard may mean more than to go back.
  virtual bool Next() { return Leave(); }

  // The person asks for help with the page.
  virtual void Help() {}

  // The control that the page wants the person's input in, 0 for any.
  virtual std::int32_t Focus() { return 0; }

  // What the page shows beside its controls: the resource number of a picture, 0 for none, and an
  // icon, which stays the page's.
  virtual std::int32_t Picture() { return 0; }
  virtual IconHandle Icon() { return nullptr; }
};

// A modal sheet of pages.
class SheetModel {
 public:
  virtual ~SheetModel() = default;
  virtual std::string Title() = 0;
  virtual std::vector<PageModel*> Pages() = 0;  // not owned by the dialogs
};

enum class SheetAnswer { kOk = 1, kCancel = 2 };

// Why a folder can't be taken, in words for the person; nothing if it can.
using FolderComplaint = std::function<std::optional<std::string>(const std::string& folder)>;

class Dialogs {
 public:
  virtual ~Dialogs() = default;

  // Shows a text under a title, which may be empty, and returns the button. Where nobody can
  // answer, it is the safe one: No, Cancel, or OK where there is no other.
  virtual BoxAnswer ShowMessage(WindowId parent, const std::string& title, const std::string& text,
                                std::uint32_t flags) = 0;

  // Shows a sheet until it is left. Where nobody can answer it is left by Cancel.
  virtual SheetAnswer ShowSheet(WindowId parent, SheetModel& sheet) = 0;

  // Lets the person choose a folder that nothing is to be complained of; nothing if they don't.
  virtual std::optional<std::string> ChooseFolder(WindowId parent, const std::string& title,
                                                  const std::string& startFolder,
                                                  const FolderComplaint& complaint) = 0;

  // From here until the matching leave, a call for help shows this context. They nest.
  virtual void EnterHelp(const std::string& context) = 0;
  virtual void LeaveHelp() = 0;

  // Shows the innermost context that stands.
  virtual void ShowHelp() = 0;

  // The module's picture of that resource number, or null. It is the caller's until destroyed.
  virtual IconHandle LoadIcon(std::int32_t resource) = 0;
  virtual void DestroyIcon(IconHandle icon) = 0;
};

// Passes everything on, so that a test overrides only what is to differ.
class DialogsWrapper : public Dialogs {
 public:
  explicit DialogsWrapper(Dialogs& target) : target(target) {}

  BoxAnswer ShowMessage(WindowId parent, const std::string& title, const std::string& text,
                        std::uint32_t flags) override {
    return target.ShowMessage(parent, title, text, flags);
  }
  SheetAnswer ShowSheet(WindowId parent, SheetModel& sheet) override {
    return target.ShowSheet(parent, sheet);
  }
  std::optional<std::string> ChooseFolder(WindowId parent, const std::string& title,
                                          const std::string& startFolder,
                                          const FolderComplaint& complaint) override {
    return target.ChooseFolder(parent, title, startFolder, complaint);
  }
  void EnterHelp(const std::string& context) override { target.EnterHelp(context); }
  void LeaveHelp() override { target.LeaveHelp(); }
  void ShowHelp() override { target.ShowHelp(); }
  IconHandle LoadIcon(std::int32_t resource) override { return target.LoadIcon(resource); }
  void DestroyIcon(IconHandle icon) override { target.DestroyIcon(icon); }

 private:
  Dialogs& target;
};

}  // namespace pw
