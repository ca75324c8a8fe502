#pragma once

#include <cstddef>
#include <cstdint>
#include <iosfwd>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "platform/dialogs.h"

namespace pw {

// Whether somebody is there to be asked: both what is read from and what is asked on are terminals.
bool TerminalIsThere();

// Asks in plain text, line by line.
//
// Each question takes one line; "?" shows the help context that stands, and the end of the input is
// the safe answer, as if nobody were there, and is told. Where nobody is there nothing is asked,
// and one line tells what was not asked and how it was taken. The program's texts are of the
// organiser's code page, the terminal's of UTF-8; control characters of a text don't reach the
// terminal.
class TerminalDialogs : public Dialogs {
 public:
  // The streams aren't owned. `width` is the terminal's, in columns.
  TerminalDialogs(std::istream& in, std::ostream& out, bool somebodyThere, std::size_t width = 80)
      : in(in), out(out), somebodyThere(somebodyThere), width(width) {}

  BoxAnswer ShowMessage(WindowId parent, const std::string& title, const std::string& text,
                        std::uint32_t flags) override;

  // Goes through the pages in order. A control is worked by its place on the page, counted from 1:
  // choices that stand side by side are one group, of which one is chosen; a combo's chosen item
  // becomes its text, as does what is typed there; the page is told when an item of a list was
  // chosen. Where a text is asked for, "=" before it has it taken as it is, be it a number, "?" or
  // none.
  SheetAnswer ShowSheet(WindowId parent, SheetModel& sheet) override;

  std::optional<std::string> ChooseFolder(WindowId parent, const std::string& title,
                                          const std::string& startFolder,
                                          const FolderComplaint& complaint) override;
  void EnterHelp(const std::string& context) override { helpContexts.push_back(context); }
  void LeaveHelp() override;
  void ShowHelp() override;

  // A terminal has no pictures: an icon is its number, and every number has one.
  IconHandle LoadIcon(std::int32_t resource) override;
  void DestroyIcon(IconHandle icon) override;

 private:
  // What a person wants of a page.
  enum class Turn { kStay, kNext, kBack, kCancel };

  // One line of input, without what surrounds it, in the organiser's code page; nothing at the end.
  // Help is the page's, if it is about one.
  std::optional<std::string> Ask(const std::string& prompt, PageModel* page = nullptr);
  void Tell(const std::string& text);
  void TellNotAsked(const std::string& question, const std::string& taken);
  void TellEnded(std::string_view taken);

  Turn ShowPage(PageModel& page, bool first, bool last);
  void WorkControl(PageModel& page, std::size_t place);
  void EditText(DialogControl& control);
  void PickItem(PageModel& page, DialogControl& list);
  void FillCombo(DialogControl& control);

  std::istream& in;
  std::ostream& out;
  bool somebodyThere;
  std::size_t width;
  std::vector<std::string> helpContexts;
};

}  // namespace pw
