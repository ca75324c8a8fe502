#include "base/codepage.h"

#include <algorithm>
#include <array>
#include <utility>

namespace pw {
namespace {

// 0x80 to 0x9F; the rest of the code page is Latin-1.
constexpr std::array<char16_t, 32> kHighControls = {
    0x20AC, 0x0081, 0x201A, 0x0192, 0x201E, 0x2026, 0x2020, 0x2021, 0x02C6, 0x2030, 0x0160,
    0x2039, 0x0152, 0x008D, 0x017D, 0x008F, 0x0090, 0x2018, 0x2019, 0x201C, 0x201D, 0x2022,
    0x2013, 0x2014, 0x02DC, 0x2122, 0x0161, 0x203A, 0x0153, 0x009D, 0x017E, 0x0178};

constexpr bool IsContinuation(char c) {
  return (static_cast<unsigned char>(c) & 0xC0) == 0x80;
}

// Length of the sequence that a lead byte opens and the bits that it holds; 0 for none.
struct Lead {
  std::size_t length;
  char32_t bits;
  char32_t least;  // anything below is an overlong form
};
constexpr Lead DecodeLead(unsigned char byte) {
  if (byte < 0x80) return {1, byte, 0};
  if (byte >= 0xC0 && byte < 0xE0) return {2, byte & 0x1FU, 0x80};
  if (byte >= 0xE0 && byte < 0xF0) return {3, byte & 0x0FU, 0x800};
  if (byte >= 0xF0 && byte < 0xF8) return {4, byte & 0x07U, 0x10000};
  return {0, 0, 0};
}

}  // namespace

char32_t CodePageToUnicode(unsigned char byte) {
  return byte >= 0x80 && byte < 0xA0 ? kHighControls[byte - 0x80U] : byte;
}

std::optional<unsigned char> UnicodeToCodePage(char32_t character) {
  if (character < 0x80 || (character >= 0xA0 && character < 0x100)) {
    return static_cast<unsigned char>(character);
  }
  const auto* found = std::find(kHighControls.begin(), kHighControls.end(), character);
  if (found == kHighControls.end()) return std::nullopt;
  return static_cast<unsigned char>(0x80 + (found - kHighControls.begin()));
}

std::optional<char32_t> TakeUtf8(std::string_view& text) {
  const Lead lead = DecodeLead(static_cast<unsigned char>(text.front()));
  bool wellFormed = lead.length != 0 && lead.length <= text.size();
  char32_t character = lead.bits;
  for (std::size_t i = 1; wellFormed && i < lead.length; ++i) {
    wellFormed = IsContinuation(text[i]);
    character = (character << 6) | (static_cast<unsigned char>(text[i]) & 0x3FU);
  }
  const bool surrogate = character >= 0xD800 && character < 0xE000;
  if (!wellFormed || character < lead.least || character > 0x10FFFF || surrogate) {
    text.remove_prefix(1);
    return std::nullopt;
  }
  text.remove_prefix(lead.length);
  return character;
}

void AppendUtf8(std::string& out, char32_t character) {
  const auto tail = [&](int shift) {
    out.push_back(static_cast<char>(0x80 | ((character >> shift) & 0x3F)));
  };
  if (character < 0x80) {
    out.push_back(static_cast<char>(character));
  } else if (character < 0x800) {
    out.push_back(static_cast<char>(0xC0 | (character >> 6)));
    tail(0);
  } else if (character < 0x10000) {
    out.push_back(static_cast<char>(0xE0 | (character >> 12)));
    tail(6);
    tail(0);
  } else {
    out.push_back(static_cast<char>(0xF0 | (character >> 18)));
    tail(12);
    tail(6);
    tail(0);
  }
}

std::string CodePageToUtf8(std::string_view text) {
  std::string out;
  out.reserve(text.size());
  for (const char c : text) AppendUtf8(out, CodePageToUnicode(static_cast<unsigned char>(c)));
  return out;
}

std::optional<std::string> Utf8ToCodePage(std::string_view text) {
  std::string out;
  out.reserve(text.size());
  while (!text.empty()) {
    const auto character = TakeUtf8(text);
    if (!character) return std::nullopt;
    const auto byte = UnicodeToCodePage(*character);
    if (!byte) return std::nullopt;
    out.push_back(static_cast<char>(*byte));
  }
  return out;
}

std::string Utf8ToCodePageLossy(std::string_view text) {
  std::string out;
  out.reserve(text.size());
  while (!text.empty()) {
    const auto character = TakeUtf8(text);
    const auto byte = character ? UnicodeToCodePage(*character) : std::nullopt;
    out.push_back(byte ? static_cast<char>(*byte) : '?');
  }
  return out;
}

bool IsUtf8(std::string_view text) {
  while (!text.empty()) {
    if (!TakeUtf8(text)) return false;
  }
  return true;
}

std::string AsUtf8(std::string text) {
  return IsUtf8(text) ? std::move(text) : CodePageToUtf8(text);
}

unsigned char CodePageLower(unsigned char byte) {
  if (byte >= 'A' && byte <= 'Z') return static_cast<unsigned char>(byte + 0x20);
  if (byte >= 0xC0 && byte <= 0xDE && byte != 0xD7) return static_cast<unsigned char>(byte + 0x20);
  if (byte == 0x8A || byte == 0x8C || byte == 0x8E) return static_cast<unsigned char>(byte + 0x10);
  return byte == 0x9F ? 0xFF : byte;
}

int CompareFileNames(std::string_view a, std::string_view b) {
  const std::size_t common = std::min(a.size(), b.size());
  for (std::size_t i = 0; i < common; ++i) {
    const int difference = CodePageLower(static_cast<unsigned char>(a[i])) -
                           CodePageLower(static_cast<unsigned char>(b[i]));
    if (difference != 0) return difference;
  }
  if (a.size() == b.size()) return 0;
  return a.size() < b.size() ? -1 : 1;
}

bool EqualFileNames(std::string_view a, std::string_view b) {
  return a.size() == b.size() && CompareFileNames(a, b) == 0;
}

}  // namespace pw
