#pragma once

#include <cstdarg>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

// Single-byte text as the organiser's C runtime treats it: no locale, bytes unsigned, 32-bit
// numbers.
namespace pw {

// A-Z to a-z, every other byte as it is.
constexpr unsigned char AsciiLower(char c) {
  const auto byte = static_cast<unsigned char>(c);
  return byte >= 'A' && byte <= 'Z' ? static_cast<unsigned char>(byte + ('a' - 'A')) : byte;
}
std::string AsciiLower(std::string_view text);

// Negative, zero or positive, as the texts are ordered with A-Z folded to lower case.
int CompareIgnoringCase(std::string_view a, std::string_view b);
bool EqualIgnoringCase(std::string_view a, std::string_view b);
bool EndsWithIgnoringCase(std::string_view text, std::string_view ending);

// The text up to its first zero byte.
std::string_view UpToZero(std::string_view text);

// A blank, or one of the five control bytes from 0x09 to 0x0D.
constexpr bool IsSpace(char c) {
  return c == ' ' || (c >= '\t' && c <= '\r');
}
std::string_view WithoutLeadingSpace(std::string_view text);

// Without white space at either end.
std::string_view Trimmed(std::string_view text);

// A path less one backslash at its end.
std::string WithoutLastBackslash(std::string path);

// A decimal number at the start of the text, behind white space and a sign; 0 if there is none.
// What doesn't fit into 32 bits leaves its low 32 bits, signed.
std::int32_t ParseLong(std::string_view text);

std::string FormatLong(std::int32_t value);

// Replaces each "\r\n" by one blank. Whether there was one to replace.
bool FoldLineBreaks(std::string& text);

// The texts with the separator between them; and the same of those that aren't empty.
std::string Join(const std::vector<std::string>& texts, std::string_view separator);
std::string JoinNonEmpty(const std::vector<std::string>& texts, std::string_view separator);

// A text from across the border, where null is the empty text.
inline std::string TextOf(const char* text) {
  return text == nullptr ? std::string() : std::string(text);
}

// `printf` into a text of any length. The list is left as it was.
[[gnu::format(printf, 1, 2)]] std::string Format(const char* format, ...);
std::string FormatList(const char* format, va_list arguments);

}  // namespace pw
