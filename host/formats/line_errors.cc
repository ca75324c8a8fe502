#include "host/formats/line_errors.h"

#include <algorithm>

namespace pw {

void LineErrors::Add(std::size_t line, std::string_view text) {
  Add("line " + std::to_string(line) + ": " + std::string(text));
}

void LineErrors::Add(std::string_view text) {
  ++count;
  if (texts.size() == kMostKept) return;
  std::string& kept = texts.emplace_back(text);
  // A piece of the file that is quoted may hold anything.
  std::replace_if(
      kept.begin(), kept.end(), [](char c) { return static_cast<unsigned char>(c) < ' '; }, ' ');
}

std::vector<std::string> LineErrors::Told() const {
  std::vector<std::string> told = texts;
  if (count > texts.size()) {
    told.push_back("and " + std::to_string(count - texts.size()) + " more of this kind");
  }
  return told;
}

std::size_t LineOf(std::string_view text, std::size_t position) {
  const std::string_view before = text.substr(0, position - 1);
  return static_cast<std::size_t>(std::count(before.begin(), before.end(), '\n')) + 1;
}

}  // namespace pw
