#include "platform/posix/terminal_dialogs.h"

#include <unistd.h>

#include <istream>
#include <ostream>
#include <string_view>
#include <utility>

#include "base/codepage.h"
#include "base/text.h"

namespace pw {

// A picture as this platform keeps it. The in-memory platform has the same, so that a program may
// hold both.
struct IconResource {
  std::int32_t number;
};

namespace {

struct Button {
  BoxAnswer answer;
  std::string_view word;
};

// The buttons of a box, in their order.
std::vector<Button> ButtonsOf(std::uint32_t flags) {
  const std::uint32_t buttons = flags & kBoxButtonsMask;
  if (buttons == kBoxYesNo) return {{BoxAnswer::kYes, "yes"}, {BoxAnswer::kNo, "no"}};
  if (buttons == kBoxOkCancel) return {{BoxAnswer::kOk, "ok"}, {BoxAnswer::kCancel, "cancel"}};
  return {{BoxAnswer::kOk, "ok"}};
}

const Button& DefaultOf(const std::vector<Button>& buttons, std::uint32_t flags) {
  const bool second = (flags & kBoxSecondButtonIsDefault) != 0 && buttons.size() > 1;
  return buttons[second ? 1 : 0];
}

std::string_view WordFor(const std::vector<Button>& buttons, BoxAnswer answer) {
  for (const Button& button : buttons) {
    if (button.answer == answer) return button.word;
  }
  return {};
}

std::string BoxPrompt(const std::vector<Button>& buttons, const Button& byDefault) {
  std::string prompt = "[";
  for (const Button& button : buttons) prompt.append(button.word).append(", ");
  return prompt.append("Enter for ").append(byDefault.word).append("] ");
}

// A word is told by its beginning already.
bool Tells(std::string_view line, std::string_view word) {
  return !line.empty() && line.size() <= word.size() &&
         EqualIgnoringCase(line, word.substr(0, line.size()));
}

bool IsControl(char32_t character) {
  return character < 0x20 || (character >= 0x7F && character < 0xA0);
}

// The text in UTF-8, safe to show: line ends are kept, other control characters become "?".
std::string Printable(std::string_view text) {
  std::string shown;
  for (const char c : text) {
    const char32_t character = CodePageToUnicode(static_cast<unsigned char>(c));
    if (c == '\n') {
      shown.push_back('\n');
    } else if (c == '\t') {
      shown.push_back(' ');
    } else if (c != '\r') {
      AppendUtf8(shown, IsControl(character) ? U'?' : character);
    }
  }
  return shown;
}

std::string OnOneLine(std::string text) {
  FoldLineBreaks(text);
  for (char& c : text) {
    if (c == '\n') c = ' ';
  }
  return text;
}

// A control's caption without the mark of the key that reaches it: "&Browse" is "Browse", "&&" is
// "&".
std::string WithoutKeyMarks(std::string_view caption) {
  std::string plain;
  for (std::size_t i = 0; i < caption.size(); ++i) {
    if (caption[i] == '&' && ++i == caption.size()) break;
    plain.push_back(caption[i]);
  }
  return plain;
}

std::string Describe(const DialogControl& control) {
  switch (control.kind) {
    case ControlKind::kLabel:
      return WithoutKeyMarks(control.text);
    case ControlKind::kChoice:
      return (control.chosen ? "(*) " : "( ) ") + WithoutKeyMarks(control.text);
    case ControlKind::kText:
      return "[" + control.text + "]";
    case ControlKind::kList:
      return "[" + control.text + "] one of " + std::to_string(control.items.size());
    case ControlKind::kCombo:
      return "[" + control.text + "] one of " + std::to_string(control.items.size()) +
             ", or another";
    case ControlKind::kButton:
      return "<" + WithoutKeyMarks(control.text) + ">";
  }
  return {};
}

// The index of the control that stands at a place, labels not counted; nothing if there is none.
std::optional<std::size_t> IndexAt(const std::vector<DialogControl>& controls, std::size_t place) {
  for (std::size_t i = 0; i < controls.size(); ++i) {
    if (controls[i].kind != ControlKind::kLabel && --place == 0) return i;
  }
  return std::nullopt;
}

void Choose(std::vector<DialogControl>& controls, std::size_t index) {
  const auto isChoice = [&](std::size_t i) { return controls[i].kind == ControlKind::kChoice; };
  std::size_t first = index;
  while (first > 0 && isChoice(first - 1)) --first;
  for (std::size_t i = first; i < controls.size() && isChoice(i); ++i) {
    controls[i].chosen = i == index;
  }
}

// A place counted from 1, or 0 if the line is no number up to `count`.
std::size_t PlaceIn(std::string_view line, std::size_t count) {
  constexpr std::size_t kLongest = 6;
  if (line.empty() || line.size() > kLongest) return 0;
  if (line.find_first_not_of("0123456789") != std::string_view::npos) return 0;
  const auto place = static_cast<std::size_t>(ParseLong(line));
  return place <= count ? place : 0;
}

}  // namespace

bool TerminalIsThere() {
  return isatty(STDIN_FILENO) == 1 && isatty(STDERR_FILENO) == 1;
}

void TerminalDialogs::Tell(const std::string& text) {
  out << Printable(text) << '\n';
}

void TerminalDialogs::TellNotAsked(const std::string& question, const std::string& taken) {
  Tell("nobody to ask, taken as \"" + taken + "\": " + OnOneLine(question));
  out.flush();
}

void TerminalDialogs::TellEnded(std::string_view taken) {
  Tell("the input has ended, taken as \"" + std::string(taken) + "\"");
  out.flush();
}

std::optional<std::string> TerminalDialogs::Ask(const std::string& prompt, PageModel* page) {
  while (true) {
    out << Printable(prompt) << std::flush;
    std::string line;
    if (!std::getline(in, line)) {
      out << '\n';
      return std::nullopt;
    }
    const std::size_t end = line.find_last_not_of(" \t\r");
    line.erase(end == std::string::npos ? 0 : end + 1);
    auto known = Utf8ToCodePage(WithoutLeadingSpace(line));
    if (!known) {
      Tell("The organiser has no such characters.");
    } else if (*known != "?") {
      return known;
    } else if (page != nullptr) {
      page->Help();
    } else {
      ShowHelp();
    }
  }
}

BoxAnswer TerminalDialogs::ShowMessage(WindowId /*parent*/, const std::string& title,
                                       const std::string& text, std::uint32_t flags) {
  const std::vector<Button> buttons = ButtonsOf(flags);
  const BoxAnswer safe = SafeAnswer(flags);
  const std::string titled = WithTitle(title, text);
  if (!somebodyThere) {
    TellNotAsked(titled, std::string(WordFor(buttons, safe)));
    return safe;
  }
  const Button& byDefault = DefaultOf(buttons, flags);
  Tell(titled);
  while (true) {
    const auto line = Ask(BoxPrompt(buttons, byDefault));
    if (!line) {
      TellEnded(WordFor(buttons, safe));
      return safe;
    }
    if (line->empty()) return byDefault.answer;
    for (const Button& button : buttons) {
      if (Tells(*line, button.word)) return button.answer;
    }
  }
}

SheetAnswer TerminalDialogs::ShowSheet(WindowId /*parent*/, SheetModel& sheet) {
  if (!somebodyThere) {
    TellNotAsked(sheet.Title(), "cancel");
    return SheetAnswer::kCancel;
  }
  Tell("== " + sheet.Title() + " ==");
  const std::vector<PageModel*> pages = sheet.Pages();
  std::size_t at = 0;
  const PageModel* shown = nullptr;
  while (at < pages.size()) {
    if (shown != pages[at]) pages[at]->Show(kNoWindow);
    shown = pages[at];
    switch (ShowPage(*pages[at], at == 0, at + 1 == pages.size())) {
      case Turn::kStay:
        break;
      case Turn::kNext:
        ++at;
        break;
      case Turn::kBack:
        --at;
        break;
      case Turn::kCancel:
        return SheetAnswer::kCancel;
    }
  }
  return SheetAnswer::kOk;
}

TerminalDialogs::Turn TerminalDialogs::ShowPage(PageModel& page, bool first, bool last) {
  ListControls(page);
  const auto line = Ask(std::string("A number to work it, Enter for ") + (last ? "OK" : "more") +
                            (first ? "" : ", b to go back") + ", c to cancel: ",
                        &page);
  if (!line) TellEnded("cancel");
  if (!line || EqualIgnoringCase(*line, "c")) return Turn::kCancel;
  if (line->empty()) return page.Next() ? Turn::kNext : Turn::kStay;
  if (!first && EqualIgnoringCase(*line, "b")) return page.Leave() ? Turn::kBack : Turn::kStay;
  WorkControl(page, PlaceIn(*line, page.Controls().size()));
  return Turn::kStay;
}

void TerminalDialogs::ListControls(PageModel& page) {
  Tell("-- " + page.Caption() + " --");
  std::size_t place = 0;
  for (const DialogControl& control : page.Controls()) {
    const bool label = control.kind == ControlKind::kLabel;
    const bool focus = control.number != 0 && control.number == page.Focus();
    Tell((focus ? "> " : "") + (label ? "" : std::to_string(++place) + " ") + Describe(control));
  }
}

void TerminalDialogs::WorkControl(PageModel& page, std::size_t place) {
  std::vector<DialogControl>& controls = page.Controls();
  const auto index = place == 0 ? std::nullopt : IndexAt(controls, place);
  if (!index) {
    Tell("There is nothing of that number.");
    return;
  }
  switch (controls[*index].kind) {
    case ControlKind::kLabel:
      return;
    case ControlKind::kChoice:
      return Choose(controls, *index);
    case ControlKind::kText:
      return EditText(controls[*index]);
    case ControlKind::kList:
      return PickItem(controls[*index]);
    case ControlKind::kCombo:
      return FillCombo(controls[*index]);
    case ControlKind::kButton:
      return page.Press(controls[*index].number);
  }
}

void TerminalDialogs::EditText(DialogControl& control) {
  const auto line = Ask("New text (Enter keeps it, \"-\" empties it): ");
  if (line && !line->empty()) control.text = *line == "-" ? "" : *line;
}

void TerminalDialogs::ListItems(const DialogControl& control) {
  for (std::size_t i = 0; i < control.items.size(); ++i) {
    Tell(std::to_string(i + 1) + " " + control.items[i]);
  }
}

void TerminalDialogs::FillCombo(DialogControl& control) {
  ListItems(control);
  const auto line = Ask("Which of them, or a new text (Enter keeps it, \"-\" empties it): ");
  if (!line || line->empty()) return;
  const std::size_t place = PlaceIn(*line, control.items.size());
  control.text = place != 0 ? control.items[place - 1] : *line == "-" ? "" : *line;
}

void TerminalDialogs::PickItem(DialogControl& control) {
  ListItems(control);
  const auto line = Ask("Which of them (Enter keeps it): ");
  const std::size_t place = line ? PlaceIn(*line, control.items.size()) : 0;
  if (place != 0) control.text = control.items[place - 1];
}

std::optional<std::string> TerminalDialogs::ChooseFolder(WindowId /*parent*/,
                                                         const std::string& title,
                                                         const std::string& startFolder,
                                                         const FolderComplaint& complaint) {
  if (!somebodyThere) {
    TellNotAsked(title, "cancel");
    return std::nullopt;
  }
  Tell(title);
  while (true) {
    const auto line = Ask("Folder (Enter for " + startFolder + ", c to cancel): ");
    if (!line) TellEnded("cancel");
    if (!line || EqualIgnoringCase(*line, "c")) return std::nullopt;
    std::string folder = line->empty() ? startFolder : *line;
    const auto wrong = complaint ? complaint(folder) : std::nullopt;
    if (!wrong) return folder;
    Tell(*wrong);
  }
}

void TerminalDialogs::LeaveHelp() {
  if (!helpContexts.empty()) helpContexts.pop_back();
}

void TerminalDialogs::ShowHelp() {
  Tell(helpContexts.empty() ? "There is no help for this."
                            : "Help is under \"" + helpContexts.back() + "\".");
}

IconHandle TerminalDialogs::LoadIcon(std::int32_t resource) {
  return new IconResource{resource};
}

void TerminalDialogs::DestroyIcon(IconHandle icon) {
  delete icon;
}

}  // namespace pw
