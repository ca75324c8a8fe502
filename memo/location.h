#pragma once

#include <string>

namespace pw::memo {

// Where a section lies, as its category says it: `stem ";" section`. What stands behind the first
// semicolon is the section's name; without one that is all, and the stem is empty.
struct Location {
  std::string stem;
  std::string section;

  explicit Location(const std::string& text) {
    const std::size_t end = text.find(';');
    section = text.substr(end + 1);
    if (end != std::string::npos) stem = text.substr(0, end);
  }
};

}  // namespace pw::memo
