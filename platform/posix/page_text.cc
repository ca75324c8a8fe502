#include "platform/posix/page_text.h"

#include <algorithm>

namespace pw {
namespace {

constexpr std::size_t kIndent = 2;
constexpr const char* kGap = "  ";

bool IsField(const DialogControl& control) {
  return control.kind == ControlKind::kText || control.kind == ControlKind::kList ||
         control.kind == ControlKind::kCombo;
}

// Whether the label belongs to the field behind it.
bool NamesField(const std::vector<DialogControl>& controls, std::size_t index) {
  return controls[index].kind == ControlKind::kLabel && controls[index].text.ends_with(':') &&
         index + 1 < controls.size() && IsField(controls[index + 1]);
}

std::size_t WidestName(const std::vector<DialogControl>& controls) {
  std::size_t widest = 0;
  for (std::size_t i = 0; i < controls.size(); ++i) {
    if (!NamesField(controls, i)) continue;
    widest = std::max(widest, WithoutKeyMarks(controls[i].text).size());
  }
  return widest;
}

std::string RightAligned(std::size_t number, std::size_t width) {
  const std::string text = std::to_string(number);
  return std::string(width > text.size() ? width - text.size() : 0, ' ') + text;
}

std::string Mark(bool chosen) {
  return chosen ? "(*) " : "( ) ";
}

std::string Describe(const DialogControl& control) {
  switch (control.kind) {
    case ControlKind::kLabel:
      return WithoutKeyMarks(control.text);
    case ControlKind::kChoice:
      return Mark(control.chosen) + WithoutKeyMarks(control.text);
    case ControlKind::kText:
    case ControlKind::kCombo:
      return ShownText(control.text);
    case ControlKind::kList:
      return ShownText(control.selected ? control.items[*control.selected] : "");
    case ControlKind::kButton:
      return "<" + WithoutKeyMarks(control.text) + ">";
  }
  return {};
}

// Takes the words off the text that fit into a line of so many columns, one at least.
std::string_view TakeLine(std::string_view& text, std::size_t room) {
  std::size_t end = text.size();
  if (end > room) {
    end = text.rfind(' ', room);
    if (end == std::string_view::npos || end == 0) end = std::min(text.find(' ', 1), text.size());
  }
  const std::string_view line = text.substr(0, end);
  text.remove_prefix(end);
  text.remove_prefix(std::min(text.find_first_not_of(' '), text.size()));
  return text.empty() ? line : line.substr(0, line.find_last_not_of(' ') + 1);
}

// The text's words in indented lines. Blanks within a line stay as they are.
std::string Paragraph(std::string_view text, std::size_t width) {
  const std::size_t room = std::max<std::size_t>(width > kIndent ? width - kIndent : 0, 1);
  std::string lines;
  while (!text.empty()) {
    std::string_view line = TakeLine(text, room);
    line = line.substr(0, line.find_last_not_of(' ') + 1);
    lines.append(kIndent, ' ').append(line).append("\n");
  }
  return lines;
}

}  // namespace

std::string WithoutKeyMarks(std::string_view caption) {
  std::string plain;
  for (std::size_t i = 0; i < caption.size(); ++i) {
    if (caption[i] == '&' && ++i == caption.size()) break;
    plain.push_back(caption[i]);
  }
  return plain;
}

std::string Wrapped(std::string_view text, std::size_t width) {
  std::string lines;
  while (true) {
    const std::size_t end = text.find('\n');
    std::string_view line = text.substr(0, end);
    if (!line.empty()) lines += TakeLine(line, width);
    while (!line.empty()) lines.append("\n").append(TakeLine(line, width));
    if (end == std::string_view::npos) return lines;
    lines += '\n';
    text.remove_prefix(end + 1);
  }
}

std::string ShownText(const std::string& text) {
  return text.empty() ? "(empty)" : text;
}

std::string PageText(PageModel& page, std::size_t width) {
  const std::vector<DialogControl>& controls = page.Controls();
  const std::size_t widestName = WidestName(controls);
  std::string text;
  std::string name;  // of the field that comes next
  std::size_t place = 0;
  bool afterLabel = true;
  for (std::size_t i = 0; i < controls.size(); ++i) {
    const DialogControl& control = controls[i];
    const bool label = control.kind == ControlKind::kLabel;
    if (NamesField(controls, i)) {
      name = WithoutKeyMarks(control.text);
      name.resize(widestName, ' ');
      name += kGap;
      continue;
    }
    if (label != afterLabel) text += '\n';
    afterLabel = label;
    if (label) {
      text += Paragraph(Describe(control), width);
      continue;
    }
    const bool focus = control.number != 0 && control.number == page.Focus();
    text +=
        (focus ? "> " : kGap) + std::to_string(++place) + kGap + name + Describe(control) + "\n";
    name.clear();
  }
  return text;
}

std::string ItemsText(const DialogControl& control) {
  const bool isList = control.kind == ControlKind::kList;
  std::string text;
  const std::size_t widest = std::to_string(control.items.size()).size();
  for (std::size_t i = 0; i < control.items.size(); ++i) {
    const std::string& item = control.items[i];
    const bool present = isList ? control.selected == i : control.text == item;
    text += kGap + RightAligned(i + 1, widest) + kGap + Mark(present) + ShownText(item) + "\n";
  }
  return text;
}

}  // namespace pw
