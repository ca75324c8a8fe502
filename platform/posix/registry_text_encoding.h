#pragma once

#include <cstdint>
#include <string>
#include <string_view>

// The characters of a registry export, which stand in the file in one of several ways.
//
// All of them are worked on in one form, the inner text: bytes in which every ASCII character is
// itself and no other character holds an ASCII byte. It can always be turned back into exactly the
// bytes that it came from, malformed ones included.
namespace pw {

enum class RegistryEncoding : std::uint8_t {
  kCodePage,  // single bytes; the inner text is the same
  kUtf8,      // the inner text is the same
  kUtf16,     // little-endian; the inner text is UTF-8, unpaired surrogates as three bytes each
};

// What a file's first bytes and its length say, and its inner text.
struct RegistryCharacters {
  RegistryEncoding encoding = RegistryEncoding::kUtf16;
  bool hasMark = true;  // a byte order mark stands first; UTF-16 always has one
  std::string inner;
  std::string
      oddByte;  // the last byte of a UTF-16 file of odd length, which belongs to no character
};

// UTF-16 and UTF-8 are known by their marks. Without one the encoding is `kCodePage`, and it is
// left to the caller to find out better.
RegistryCharacters DecodeRegistryFile(std::string_view bytes);

// The bytes of a file, around an inner text that may have changed since.
std::string EncodeRegistryFile(const RegistryCharacters& characters, std::string_view inner);

// Between inner text and the organiser's code page. What the code page lacks becomes "?".
std::string InnerToCodePage(std::string_view inner, RegistryEncoding encoding);
std::string CodePageToInner(std::string_view text, RegistryEncoding encoding);

// Whether an inner text holds only characters that the code page has, so that nothing becomes "?".
bool FitsCodePage(std::string_view inner, RegistryEncoding encoding);

// UTF-16 code units, little-endian, to and from the code page. An odd last byte is ignored.
std::string Utf16ToCodePage(std::string_view units);
std::string CodePageToUtf16(std::string_view text);

}  // namespace pw
