#include "base/text.h"

#include <algorithm>
#include <cstdio>
#include <iterator>

namespace pw {

std::string AsciiLower(std::string_view text) {
  std::string lower(text);
  for (char& c : lower) c = static_cast<char>(AsciiLower(c));
  return lower;
}

int CompareIgnoringCase(std::string_view a, std::string_view b) {
  const std::size_t common = std::min(a.size(), b.size());
  for (std::size_t i = 0; i < common; ++i) {
    const int difference = AsciiLower(a[i]) - AsciiLower(b[i]);
    if (difference != 0) return difference;
  }
  if (a.size() == b.size()) return 0;
  return a.size() < b.size() ? -1 : 1;
}

bool EqualIgnoringCase(std::string_view a, std::string_view b) {
  return a.size() == b.size() && CompareIgnoringCase(a, b) == 0;
}

bool EndsWithIgnoringCase(std::string_view text, std::string_view ending) {
  return text.size() >= ending.size() &&
         EqualIgnoringCase(text.substr(text.size() - ending.size()), ending);
}

std::string_view UpToZero(std::string_view text) {
  return text.substr(0, text.find('\0'));
}

std::string_view WithoutLeadingSpace(std::string_view text) {
  while (!text.empty() && IsSpace(text.front())) text.remove_prefix(1);
  return text;
}

std::string_view Trimmed(std::string_view text) {
  text = WithoutLeadingSpace(text);
  while (!text.empty() && IsSpace(text.back())) text.remove_suffix(1);
  return text;
}

std::string WithoutLastBackslash(std::string path) {
  if (!path.empty() && path.back() == '\\') path.pop_back();
  return path;
}

std::int32_t ParseLong(std::string_view text) {
  text = WithoutLeadingSpace(text);
  bool negative = false;
  if (!text.empty() && (text.front() == '-' || text.front() == '+')) {
    negative = text.front() == '-';
    text.remove_prefix(1);
  }
  std::uint32_t value = 0;
  for (const char c : text) {
    if (c < '0' || c > '9') break;
    value = value * 10 + static_cast<std::uint32_t>(c - '0');
  }
  return static_cast<std::int32_t>(negative ? 0U - value : value);
}

std::string FormatLong(std::int32_t value) {
  return std::to_string(value);
}

bool FoldLineBreaks(std::string& text) {
  std::size_t from = text.find("\r\n");
  if (from == std::string::npos) return false;
  std::size_t to = from;
  while (from < text.size()) {
    const bool lineBreak = text[from] == '\r' && from + 1 < text.size() && text[from + 1] == '\n';
    text[to++] = lineBreak ? ' ' : text[from];
    from += lineBreak ? 2 : 1;
  }
  text.resize(to);
  return true;
}

std::string Join(const std::vector<std::string>& texts, std::string_view separator) {
  std::string joined;
  for (std::size_t i = 0; i < texts.size(); ++i) {
    if (i > 0) joined += separator;
    joined += texts[i];
  }
  return joined;
}

std::string JoinNonEmpty(const std::vector<std::string>& texts, std::string_view separator) {
  std::vector<std::string> present;
  std::copy_if(texts.begin(), texts.end(), std::back_inserter(present),
               [](const std::string& text) { return !text.empty(); });
  return Join(present, separator);
}

std::string Format(const char* format, ...) {
  va_list arguments;
  va_start(arguments, format);
  std::string text = FormatList(format, arguments);
  va_end(arguments);
  return text;
}

std::string FormatList(const char* format, va_list arguments) {
  va_list measured;
  va_copy(measured, arguments);
  const int size = std::vsnprintf(nullptr, 0, format, measured);
  va_end(measured);
  if (size <= 0) return {};
  std::string text(static_cast<std::size_t>(size), '\0');
  va_list written;
  va_copy(written, arguments);
  std::vsnprintf(text.data(), text.size() + 1, format, written);
  va_end(written);
  return text;
}

}  // namespace pw
