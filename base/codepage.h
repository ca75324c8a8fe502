#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

// Code page 1252, the organiser's text, against Unicode.
//
// The five bytes without a meaning (0x81, 0x8D, 0x8F, 0x90, 0x9D) stand for the control characters
// of the same number, so that every byte string survives the way to UTF-8 and back.
namespace pw {

char32_t CodePageToUnicode(unsigned char byte);
std::optional<unsigned char> UnicodeToCodePage(char32_t character);

std::string CodePageToUtf8(std::string_view text);

// Nothing if the text isn't well-formed UTF-8 or holds a character that the code page lacks.
std::optional<std::string> Utf8ToCodePage(std::string_view text);

// The same, each character that the code page lacks and each malformed byte becoming "?".
std::string Utf8ToCodePageLossy(std::string_view text);

// Whether the text is well-formed UTF-8.
bool IsUtf8(std::string_view text);

// The text in UTF-8: as it is if it is well-formed, else taken as one of the code page.
std::string AsUtf8(std::string text);

// The next character of a UTF-8 text, taken off its front; nothing if it is malformed there (one
// byte is taken off then). The text must not be empty.
std::optional<char32_t> TakeUtf8(std::string_view& text);
void AppendUtf8(std::string& out, char32_t character);

// Upper to lower case for the whole code page, as a file system on the organiser's machine compares
// names.
unsigned char CodePageLower(unsigned char byte);
bool EqualFileNames(std::string_view a, std::string_view b);

// Negative, zero or positive: the order of a folder's names.
int CompareFileNames(std::string_view a, std::string_view b);

}  // namespace pw
