#include "cardfile/card_templates.h"

#include <algorithm>
#include <cstddef>

namespace pw::cardfile {
namespace {

constexpr std::string_view kBrackets = "[]";
constexpr std::string_view kLineEnds = "\r\n";

std::size_t FindOrEnd(std::string_view text, std::string_view any, std::size_t from) {
  return std::min(text.find_first_of(any, from), text.size());
}

}  // namespace

std::vector<CardTemplate> ReadTemplates(std::string_view text) {
  std::vector<CardTemplate> templates;
  std::size_t lineEnd = 0;   // of the line that was looked at last
  std::size_t nextLine = 0;  // behind its line ends
  std::size_t at = 0;
  for (;;) {
    const std::size_t open = FindOrEnd(text, kBrackets, at);
    if (open == text.size()) return templates;
    const std::size_t close = FindOrEnd(text, kBrackets, open + 1);
    at = std::min(close + 1, text.size());
    if (lineEnd < at) {
      lineEnd = FindOrEnd(text, kLineEnds, at);
      nextLine = std::min(text.find_first_not_of(kLineEnds, lineEnd), text.size());
    }
    templates.push_back({text.substr(open + 1, close - open - 1), text.substr(at, lineEnd - at)});
    if (nextLine == text.size()) return templates;
  }
}

std::vector<std::string> FieldsOf(std::string_view fields) {
  std::vector<std::string> names;
  for (std::size_t at = 0; at < fields.size();) {
    const std::size_t end = FindOrEnd(fields, "\t", at);
    if (end > at) names.emplace_back(fields.substr(at, end - at));
    at = end + 1;
  }
  return names;
}

}  // namespace pw::cardfile
