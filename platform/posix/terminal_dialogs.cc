#include "platform/posix/terminal_dialogs.h"

#include <unistd.h>

#include <istream>
#include <ostream>
#include <string_view>
#include <utility>

#include "base/codepage.h"
#include "base/text.h"
#include "platform/posix/page_text.h"

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
  std::string prompt;
  if (buttons.size() > 1) {
    for (const Button& button : buttons) prompt.append(button.word).append(", ");
  }
  return prompt.append("Enter for ").append(byDefault.word).append(": ");
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

// The index of the control that stands at a place, labels not counted; nothing if there is none.
std::optional<std::size_t> IndexAt(const std::vector<DialogControl>& controls, std::size_t place) {
  for (std::size_t i = 0; i < controls.size(); ++i) {
    if (controls[i].kind != ControlKind::kLabel && --place == 0) return i;
  }
  return std::nullopt;
}

constexpr const char* kNoSuchNumber = "There is nothing of that number.";

bool IsNumber(std::string_view line) {
  return !line.empty() && line.find_first_not_of("0123456789") == std::string_view::npos;
}

// A place counted from 1, or 0 if the line is no number up to `count`.
std::size_t PlaceIn(std::string_view line, std::size_t count) {
  constexpr std::size_t kLongest = 6;
  if (!IsNumber(line) || line.size() > kLongest) return 0;
  const auto place = static_cast<std::size_t>(ParseLong(line));
  return place <= count ? place : 0;
}

// Before a text that would mean something else, or before none.
constexpr char kTakenAsItIs = '=';

std::string TypedText(const std::string& line) {
  return line.front() == kTakenAsItIs ? line.substr(1) : line;
}

// The answer that chooses no folder: no file's name has such a character.
constexpr std::string_view kNoFolder = "<";

// How a page is headed. The caption is told where it says more than the sheet's title.
std::string Heading(const std::string& title, const std::string& caption, std::size_t page,
                    std::size_t pages) {
  std::string heading = title;
  if (pages > 1) heading += ", page " + std::to_string(page) + " of " + std::to_string(pages);
  if (!title.starts_with(caption)) heading += ": " + caption;
  return heading;
}

}  // namespace

bool TerminalIsThere() {
  return isatty(STDIN_FILENO) == 1 && isatty(STDERR_FILENO) == 1;
}

void TerminalDialogs::Tell(const std::string& text) {
  out << Printable(Wrapped(text, width)) << '\n';
}

void TerminalDialogs::TellNotAsked(const std::string& question, const std::string& taken) {
  out << Printable("nobody to ask, taken as \"" + taken + "\": " + OnOneLine(question))
      << std::endl;
}

void TerminalDialogs::TellEnded(std::string_view taken) {
  out << Printable("the input has ended, taken as \"" + std::string(taken) + "\"") << std::endl;
}

std::optional<std::string> TerminalDialogs::Ask(const std::string& prompt, PageModel* page) {
  while (true) {
    out << Printable(Wrapped(prompt, width)) << std::flush;
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
      Tell(
          "A number changes its line, Enter goes on; \"back\" and \"cancel\" are told by their "
          "beginnings already.");
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
  Tell(titled.substr(0, titled.find_last_not_of("\r\n") + 1));
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
  const std::vector<PageModel*> pages = sheet.Pages();
  std::size_t at = 0;
  const PageModel* shown = nullptr;
  while (at < pages.size()) {
    if (shown != pages[at]) pages[at]->Show(kNoWindow);
    shown = pages[at];
    Tell("\n" + Heading(sheet.Title(), pages[at]->Caption(), at + 1, pages.size()) + "\n");
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
  out << Printable(PageText(page, width)) << '\n';
  const auto line =
      Ask(std::string("Number to change, Enter for ") + (last ? "OK" : "the next page") +
              (first ? "" : ", b to go back") + ", c to cancel: ",
          &page);
  if (!line) TellEnded("cancel");
  if (!line || Tells(*line, "cancel")) return Turn::kCancel;
  if (line->empty()) return page.Next() ? Turn::kNext : Turn::kStay;
  if (!first && Tells(*line, "back")) return page.Leave() ? Turn::kBack : Turn::kStay;
  WorkControl(page, PlaceIn(*line, page.Controls().size()));
  return Turn::kStay;
}

void TerminalDialogs::WorkControl(PageModel& page, std::size_t place) {
  std::vector<DialogControl>& controls = page.Controls();
  const auto index = place == 0 ? std::nullopt : IndexAt(controls, place);
  if (!index) {
    return Tell(kNoSuchNumber);
  }
  switch (controls[*index].kind) {
    case ControlKind::kLabel:
      return;
    case ControlKind::kChoice:
      return ChooseOne(controls, *index);
    case ControlKind::kText:
      return EditText(controls[*index]);
    case ControlKind::kList:
      return PickItem(page, controls[*index]);
    case ControlKind::kCombo:
      return FillCombo(controls[*index]);
    case ControlKind::kButton:
      return page.Press(controls[*index].number);
  }
}

void TerminalDialogs::EditText(DialogControl& control) {
  const auto line = Ask("New text (Enter keeps it, \"=\" alone empties it): ");
  if (line && !line->empty()) control.text = TypedText(*line);
}

void TerminalDialogs::FillCombo(DialogControl& control) {
  if (control.items.empty()) return EditText(control);
  out << Printable(ItemsText(control));
  const auto line = Ask(
      "Number to choose, or another text; \"=\" before one that is a number (Enter keeps it): ");
  if (!line || line->empty()) return;
  const std::size_t place = PlaceIn(*line, control.items.size());
  if (place > 0) {
    control.text = control.items[place - 1];
  } else if (IsNumber(*line)) {
    Tell(kNoSuchNumber);
  } else {
    control.text = TypedText(*line);
  }
}

void TerminalDialogs::PickItem(PageModel& page, DialogControl& list) {
  out << Printable(ItemsText(list));
  const auto line = Ask("Number to choose (Enter keeps it): ");
  if (!line || line->empty()) return;
  const std::size_t place = PlaceIn(*line, list.items.size());
  if (place == 0) return Tell(kNoSuchNumber);
  list.selected = place - 1;
  page.Press(list.number);
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
    const auto line =
        Ask("Folder (Enter for " + ShownText(startFolder) + ", \"<\" to choose none): ");
    if (!line) TellEnded("cancel");
    if (!line || *line == kNoFolder) return std::nullopt;
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
                            : "The organiser's help has it under \"" + helpContexts.back() + "\".");
}

IconHandle TerminalDialogs::LoadIcon(std::int32_t resource) {
  return new IconResource{resource};
}

void TerminalDialogs::DestroyIcon(IconHandle icon) {
  delete icon;
}

}  // namespace pw
