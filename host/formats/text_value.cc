#include "host/formats/text_value.h"

#include "base/codepage.h"

namespace pw {
namespace {

constexpr std::string_view kProtected = "\\,;:";

}  // namespace

std::string EscapeText(std::string_view text) {
  std::string value;
  value.reserve(text.size());
  for (const char c : text) {
    if (c == '\\' || c == ',' || c == ';' || c == '\n') value += '\\';
    value += c == '\n' ? 'n' : c;
  }
  return value;
}

std::string UnescapeText(std::string_view value) {
  std::string text;
  text.reserve(value.size());
  for (std::size_t i = 0; i < value.size(); ++i) {
    const char next = value[i] == '\\' && i + 1 < value.size() ? value[i + 1] : '\0';
    if (next == 'n' || next == 'N') {
      text += '\n';
      ++i;
    } else if (next != '\0' && kProtected.find(next) != std::string_view::npos) {
      text += next;
      ++i;
    } else {
      text += value[i];
    }
  }
  return text;
}

std::vector<std::string_view> SplitValue(std::string_view value, char separator) {
  std::vector<std::string_view> pieces;
  std::size_t start = 0;
  for (std::size_t i = 0; i < value.size(); ++i) {
    if (value[i] == '\\') {
      ++i;
    } else if (value[i] == separator) {
      pieces.push_back(value.substr(start, i - start));
      start = i + 1;
    }
  }
  pieces.push_back(value.substr(start));
  return pieces;
}

bool IsPlainText(std::string_view text) {
  while (!text.empty()) {
    if (text.substr(0, 2) == "\r\n") {
      text.remove_prefix(2);
      continue;
    }
    const auto character = TakeUtf8(text);
    if (!character) return false;
    if ((*character < ' ' && *character != '\t') || *character == 0x7F) return false;
  }
  return true;
}

std::string WithLineFeeds(std::string_view text) {
  std::string result;
  result.reserve(text.size());
  for (std::size_t i = 0; i < text.size(); ++i) {
    const bool lineBreak = text[i] == '\r' && i + 1 < text.size() && text[i + 1] == '\n';
    if (!lineBreak) result += text[i];
  }
  return result;
}

std::string WithLineBreaks(std::string_view text) {
  std::string result;
  result.reserve(text.size());
  for (const char c : text) {
    if (c == '\n' && (result.empty() || result.back() != '\r')) result += '\r';
    result += c;
  }
  return result;
}

}  // namespace pw
