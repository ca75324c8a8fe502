#include "platform/files.h"

#include "base/codepage.h"

namespace pw {

bool ComesBefore(const FoundFile& a, const FoundFile& b) {
  const int order = CompareFileNames(a.name, b.name);
  return order != 0 ? order < 0 : a.name < b.name;
}

bool MatchesPattern(std::string_view name, std::string_view pattern) {
  std::size_t at = 0;
  std::size_t inPattern = 0;
  std::size_t star = std::string_view::npos;  // the last "*" met, to which a mismatch goes back
  std::size_t starAt = 0;                     // the name's position that this "*" reaches to
  while (at < name.size()) {
    const bool more = inPattern < pattern.size();
    if (more && pattern[inPattern] == '*') {
      star = inPattern++;
      starAt = at;
    } else if (more && (pattern[inPattern] == '?' ||
                        EqualFileNames(pattern.substr(inPattern, 1), name.substr(at, 1)))) {
      ++inPattern;
      ++at;
    } else if (star != std::string_view::npos) {
      inPattern = star + 1;
      at = ++starAt;
    } else {
      return false;
    }
  }
  while (inPattern < pattern.size() && pattern[inPattern] == '*') ++inPattern;
  return inPattern == pattern.size();
}

}  // namespace pw
