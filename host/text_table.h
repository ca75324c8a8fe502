#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

// Text for a terminal. All of it is UTF-8.
namespace pw {

// How many columns a text takes: each character one, those that stack on others none, the wide ones
// of East Asia two.
std::size_t DisplayWidth(std::string_view text);

// Whether a character, or what is none, may steer a terminal instead of standing there.
bool IsControl(std::optional<char32_t> character);

// The text without control characters: line breaks and tabs become one blank each, others "?".
std::string OneLine(std::string_view text);

// The text filled up with blanks to a width, or cut to it, ending in "…" then.
std::string Fitted(std::string_view text, std::size_t width);

// A heading and rows of the same number of cells.
struct TextTable {
  std::vector<std::string> heading;
  std::vector<std::vector<std::string>> rows;
};

// For people: columns that stand below each other, cut so that a line takes at most `width`
// columns. A column that is empty in all rows is left out, and so are the last ones where there is
// no room left.
std::string RenderForPeople(const TextTable& table, std::size_t width);

// For programs: one line a row, tabs between the cells, nothing cut or left out.
std::string RenderForPrograms(const TextTable& table);

}  // namespace pw
