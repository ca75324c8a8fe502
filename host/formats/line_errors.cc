#include "host/formats/line_errors.h"

namespace pw {

void LineErrors::Add(std::size_t line, std::string_view text) {
  ++count;
  if (texts.size() == kMostKept) return;
  texts.push_back("line " + std::to_string(line) + ": ");
  // A piece of the file that is quoted may hold anything.
  for (const char c : text) texts.back() += static_cast<unsigned char>(c) < ' ' ? ' ' : c;
}

std::vector<std::string> LineErrors::Told() const {
  std::vector<std::string> told = texts;
  if (count > texts.size()) {
    told.push_back("and " + std::to_string(count - texts.size()) + " more of this kind");
  }
  return told;
}

}  // namespace pw
