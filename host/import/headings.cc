#include "host/import/headings.h"

#include <algorithm>
#include <cstddef>

#include "base/text.h"

namespace pw {
namespace {

// Enough to see what is meant.
constexpr std::size_t kMostNamed = 8;

std::string Named(const std::vector<std::string>& names) {
  std::string text;
  for (std::size_t i = 0; i < names.size() && i < kMostNamed; ++i) {
    text += (i == 0 ? "\"" : ", \"") + names[i] + "\"";
  }
  return names.size() > kMostNamed ? text + " and so on" : text;
}

}  // namespace

std::string WhyNoneKnown(const std::vector<std::string>& headings,
                         const std::vector<std::string>& known) {
  const auto isKnown = [&](const std::string& heading) {
    return std::any_of(known.begin(), known.end(),
                       [&](const std::string& name) { return EqualIgnoringCase(name, heading); });
  };
  if (headings.empty() || std::any_of(headings.begin(), headings.end(), isKnown)) return {};
  std::string why = "line 1: none of its headings is known; they would be " + Named(known);
  const std::string& first = headings.front();
  const char* separators = first.find(';') != std::string::npos    ? "semicolons"
                           : first.find('\t') != std::string::npos ? "tabs"
                                                                   : nullptr;
  if (separators != nullptr) {
    why += std::string("; the cells must be separated by commas, not ") + separators;
  }
  return why;
}

}  // namespace pw
