#include "host/text_table.h"

#include <algorithm>
#include <iterator>

#include "base/codepage.h"

namespace pw {
namespace {

constexpr std::size_t kGap = 2;
constexpr std::size_t kWidestColumn = 28;
constexpr std::string_view kEllipsis = "…";

struct Range {
  char32_t first;
  char32_t last;
};

constexpr Range kWide[] = {
    {0x1100, 0x115F}, {0x2E80, 0x303E}, {0x3041, 0xA4CF}, {0xAC00, 0xD7A3},   {0xF900, 0xFAFF},
    {0xFE30, 0xFE6F}, {0xFF00, 0xFF60}, {0xFFE0, 0xFFE6}, {0x1F300, 0x1FAFF}, {0x20000, 0x3FFFD}};
constexpr Range kStacked[] = {
    {0x0300, 0x036F}, {0x200B, 0x200F}, {0x20D0, 0x20FF}, {0xFE00, 0xFE0F}};

template <std::size_t N>
bool IsIn(const Range (&ranges)[N], char32_t character) {
  return std::any_of(std::begin(ranges), std::end(ranges), [&](const Range& range) {
    return character >= range.first && character <= range.last;
  });
}

std::size_t WidthOf(char32_t character) {
  if (IsIn(kStacked, character)) return 0;
  return IsIn(kWide, character) ? 2 : 1;
}

// The width of each column to be shown, 0 for one that is left out.
std::vector<std::size_t> ColumnWidths(const TextTable& table, std::size_t width) {
  std::vector<std::size_t> widths(table.heading.size(), 0);
  for (const auto& row : table.rows) {
    for (std::size_t i = 0; i < widths.size(); ++i) {
      widths[i] = std::max(widths[i], std::min(DisplayWidth(OneLine(row[i])), kWidestColumn));
    }
  }
  std::size_t used = 0;
  for (std::size_t i = 0; i < widths.size(); ++i) {
    if (widths[i] == 0) continue;
    const std::size_t wanted =
        std::max(widths[i], std::min(DisplayWidth(table.heading[i]), kWidestColumn));
    const std::size_t gap = used == 0 ? 0 : kGap;
    const bool fits = used + gap + wanted <= width || used == 0;
    widths[i] = fits ? wanted : 0;
    if (fits) used += gap + wanted;
    // What follows would stand where something else was left out.
    if (!fits) std::fill(widths.begin() + static_cast<std::ptrdiff_t>(i), widths.end(), 0);
  }
  return widths;
}

std::string Line(const std::vector<std::string>& cells, const std::vector<std::size_t>& widths) {
  std::string line;
  bool first = true;
  for (std::size_t i = 0; i < widths.size(); ++i) {
    if (widths[i] == 0) continue;
    if (!first) line.append(kGap, ' ');
    first = false;
    line += Fitted(OneLine(cells[i]), widths[i]);
  }
  line.erase(line.find_last_not_of(' ') + 1);
  return line + "\n";
}

std::string Tabbed(const std::vector<std::string>& cells) {
  std::string line;
  for (const std::string& cell : cells) {
    if (&cell != &cells.front()) line += '\t';
    line += OneLine(cell);
  }
  return line + "\n";
}

}  // namespace

std::size_t DisplayWidth(std::string_view text) {
  std::size_t width = 0;
  while (!text.empty()) {
    const auto character = TakeUtf8(text);
    width += character ? WidthOf(*character) : 1;
  }
  return width;
}

bool IsControl(std::optional<char32_t> character) {
  return !character || *character < 0x20 || (*character >= 0x7F && *character < 0xA0);
}

std::string OneLine(std::string_view text) {
  std::string out;
  while (!text.empty()) {
    // The two bytes of a line break are one.
    if (text.substr(0, 2) == "\r\n") text.remove_prefix(1);
    const auto character = TakeUtf8(text);
    const bool isBlank = character == U'\n' || character == U'\r' || character == U'\t';
    if (isBlank) {
      out += ' ';
    } else if (IsControl(character)) {
      out += '?';
    } else {
      AppendUtf8(out, *character);
    }
  }
  return out;
}

std::string Fitted(std::string_view text, std::size_t width) {
  std::string out(text);
  std::size_t used = DisplayWidth(text);
  if (used > width) {
    out.clear();
    used = 0;
    while (!text.empty()) {
      std::string_view rest = text;
      const auto character = TakeUtf8(rest);
      const std::size_t more = character ? WidthOf(*character) : 1;
      if (used + more + 1 > width) break;
      out += text.substr(0, text.size() - rest.size());
      used += more;
      text = rest;
    }
    if (width > 0) {
      out += kEllipsis;
      ++used;
    }
  }
  out.append(width - std::min(width, used), ' ');
  return out;
}

std::string RenderForPeople(const TextTable& table, std::size_t width) {
  const std::vector<std::size_t> widths = ColumnWidths(table, width);
  std::string out = Line(table.heading, widths);
  for (const auto& row : table.rows) out += Line(row, widths);
  return out;
}

std::string RenderForPrograms(const TextTable& table) {
  std::string out = Tabbed(table.heading);
  for (const auto& row : table.rows) out += Tabbed(row);
  return out;
}

}  // namespace pw
