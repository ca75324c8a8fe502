#include "host/formats/transfer_encoding.h"

#include <cstdint>

#include "base/hex.h"
#include "base/text.h"

namespace pw {
namespace {

constexpr std::string_view kDigits64 =
    "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";
constexpr std::string_view kDigits16 = "0123456789ABCDEF";

constexpr bool IsUnreserved(char c) {
  const unsigned char lower = AsciiLower(c);
  return (lower >= 'a' && lower <= 'z') || (c >= '0' && c <= '9') ||
         std::string_view("-._~").find(c) != std::string_view::npos;
}

// Replaces each mark and two hexadecimal digits by the byte that they name.
std::string DecodeHexPairs(std::string_view text, char mark) {
  std::string bytes;
  bytes.reserve(text.size());
  for (std::size_t i = 0; i < text.size(); ++i) {
    const bool pair = text[i] == mark && text.size() - i > 2;
    const int high = pair ? HexDigit(text[i + 1]) : -1;
    const int low = pair ? HexDigit(text[i + 2]) : -1;
    if (high < 0 || low < 0) {
      bytes += text[i];
      continue;
    }
    bytes += static_cast<char>(high * 16 + low);
    i += 2;
  }
  return bytes;
}

}  // namespace

std::string EncodeBase64(std::string_view bytes) {
  std::string text;
  text.reserve((bytes.size() + 2) / 3 * 4);
  for (std::size_t i = 0; i < bytes.size(); i += 3) {
    std::uint32_t group = 0;
    for (std::size_t k = 0; k < 3; ++k) {
      group = group << 8 | (i + k < bytes.size() ? static_cast<unsigned char>(bytes[i + k]) : 0U);
    }
    for (std::size_t k = 0; k < 4; ++k) {
      const bool padding = i + k > bytes.size();
      text += padding ? '=' : kDigits64[group >> (18 - 6 * k) & 0x3F];
    }
  }
  return text;
}

std::optional<std::string> DecodeBase64(std::string_view text) {
  std::string bytes;
  bytes.reserve(text.size() / 4 * 3);
  std::uint32_t bits = 0;
  int count = 0;  // bits not yet given out
  bool ended = false;
  for (const char c : text) {
    if (IsSpace(c)) continue;
    const std::size_t digit = kDigits64.find(c);
    ended = ended || c == '=';
    if (ended && c == '=') continue;
    if (ended || digit == std::string_view::npos) return std::nullopt;
    bits = bits << 6 | static_cast<std::uint32_t>(digit);
    count += 6;
    if (count < 8) continue;
    count -= 8;
    bytes += static_cast<char>(bits >> count & 0xFF);
  }
  if (count == 6) return std::nullopt;
  return bytes;
}

std::string DecodeQuotedPrintable(std::string_view text) {
  return DecodeHexPairs(text, '=');
}

std::string EncodePercent(std::string_view bytes) {
  std::string text;
  for (const char c : bytes) {
    if (IsUnreserved(c)) {
      text += c;
      continue;
    }
    const auto byte = static_cast<unsigned char>(c);
    text += '%';
    text += kDigits16[byte >> 4];
    text += kDigits16[byte & 0xF];
  }
  return text;
}

std::string DecodePercent(std::string_view text) {
  return DecodeHexPairs(text, '%');
}

}  // namespace pw
