#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

#include "platform/posix/registry_text_encoding.h"
#include "platform/registry.h"

// The lines of a registry export: how one is cut off the text, and how a value stands in it.
//
//   value  := name blanks "=" blanks data blanks [";" comment] line-end
//   name   := "@" | quoted                     "@" and "" are the key's default value
//   data   := quoted | "dword:" digits | "hex:" bytes | "hex(" type "):" bytes | "-"
//   quoted := '"' (any character, with "\" and '"' behind a "\" each) '"'
//   bytes  := nothing | byte ("," byte)*       a "\" at a line's end goes on in the next line
//
// All numbers are hexadecimal. The bytes of the types 1 and 2 are text with one zero at the end, of
// the code page in a REGEDIT4 file and UTF-16 in the later version. All text here is inner text.
namespace pw {

enum class RegistryVersion : std::uint8_t { k4, k5 };

struct RegistryFormat {
  RegistryVersion version = RegistryVersion::k5;
  RegistryEncoding encoding = RegistryEncoding::kUtf16;
  std::string lineEnd = "\r\n";  // of lines that are made anew
};

// Cuts one line off the front, its line end included, and with it the lines in which its bytes go
// on. A line that can't be such a continuation is never taken for one. The text must not be empty.
std::string_view TakeRegistryLine(std::string_view& text);

// Blanks stand between all parts of a line. A carriage return is one, wherever it stands.
constexpr bool IsRegistryBlank(char c) {
  return c == ' ' || c == '\t' || c == '\r';
}
std::string_view WithoutRegistryBlanks(std::string_view text);  // at the front

struct RegistryValueLine {
  const char* complaint = nullptr;  // what is wrong; nothing else is told then
  std::string name;                 // of the code page, unless `nameFits` is false
  bool nameFits = true;             // the code page has all of the name's characters
  bool deletes = false;             // the line takes the value away
  RegistryValue value;              // if it doesn't

  // Where the data stands in the line; what is around it is kept when the value changes.
  std::size_t dataStart = 0;
  std::size_t dataEnd = 0;
};
RegistryValueLine ParseRegistryValue(std::string_view line, const RegistryFormat& format);

// The name with the "=" behind it, and the data in lines of the usual length when the first starts
// at a column. Neither has a line end of its own.
std::string FormatRegistryName(std::string_view name, const RegistryFormat& format);
std::string FormatRegistryData(const RegistryValue& value, const RegistryFormat& format,
                               std::size_t column);

}  // namespace pw
