#include "platform/posix/registry_text_encoding.h"

#include "base/codepage.h"
#include "base/cursor.h"

namespace pw {
namespace {

constexpr std::string_view kUtf16Mark = "\xFF\xFE";
constexpr std::string_view kUtf8Mark = "\xEF\xBB\xBF";

constexpr bool IsHighSurrogate(char32_t unit) {
  return unit >= 0xD800 && unit < 0xDC00;
}
constexpr bool IsLowSurrogate(char32_t unit) {
  return unit >= 0xDC00 && unit < 0xE000;
}

std::string Utf16ToInner(std::string_view units) {
  std::string inner;
  inner.reserve(units.size());
  ByteReader reader(units);
  char32_t high = 0;
  while (reader.Remaining() >= 2) {
    const char32_t unit = reader.U16();
    if (high != 0 && IsLowSurrogate(unit)) {
      AppendUtf8(inner, 0x10000 + ((high - 0xD800) << 10) + (unit - 0xDC00));
      high = 0;
      continue;
    }
    if (high != 0) AppendUtf8(inner, high);
    high = IsHighSurrogate(unit) ? unit : 0;
    if (high == 0) AppendUtf8(inner, unit);
  }
  if (high != 0) AppendUtf8(inner, high);
  return inner;
}

// A surrogate on its own is no UTF-8, so it is put together here.
char32_t TakeInner(std::string_view& inner) {
  const std::string_view whole = inner;
  if (const auto character = TakeUtf8(inner)) return *character;
  if (whole.size() < 3 || whole[0] != '\xED') return static_cast<unsigned char>(whole[0]);
  inner = whole.substr(3);
  const auto bits = [&](std::size_t i) { return static_cast<unsigned char>(whole[i]) & 0x3FU; };
  return 0xD000 | (bits(1) << 6) | bits(2);
}

void AppendUtf16(ByteWriter& out, char32_t character) {
  if (character < 0x10000) {
    out.U16(static_cast<std::uint16_t>(character));
    return;
  }
  out.U16(static_cast<std::uint16_t>(0xD800 + ((character - 0x10000) >> 10)));
  out.U16(static_cast<std::uint16_t>(0xDC00 + ((character - 0x10000) & 0x3FF)));
}

}  // namespace

RegistryCharacters DecodeRegistryFile(std::string_view bytes) {
  if (bytes.starts_with(kUtf16Mark)) {
    bytes.remove_prefix(kUtf16Mark.size());
    const std::size_t even = bytes.size() - bytes.size() % 2;
    return {RegistryEncoding::kUtf16, true, Utf16ToInner(bytes), std::string(bytes.substr(even))};
  }
  if (bytes.starts_with(kUtf8Mark)) {
    return {RegistryEncoding::kUtf8, true, std::string(bytes.substr(kUtf8Mark.size())), {}};
  }
  return {RegistryEncoding::kCodePage, false, std::string(bytes), {}};
}

std::string EncodeRegistryFile(const RegistryCharacters& characters, std::string_view inner) {
  if (characters.encoding != RegistryEncoding::kUtf16) {
    return std::string(characters.hasMark ? kUtf8Mark : std::string_view()).append(inner);
  }
  ByteWriter out;
  out.Reserve(kUtf16Mark.size() + 2 * inner.size() + characters.oddByte.size());
  out.Bytes(kUtf16Mark);
  while (!inner.empty()) AppendUtf16(out, TakeInner(inner));
  out.Bytes(characters.oddByte);
  return out.Release();
}

std::string InnerToCodePage(std::string_view inner, RegistryEncoding encoding) {
  if (encoding == RegistryEncoding::kCodePage) return std::string(inner);
  return Utf8ToCodePageLossy(inner);
}

std::string CodePageToInner(std::string_view text, RegistryEncoding encoding) {
  if (encoding == RegistryEncoding::kCodePage) return std::string(text);
  return CodePageToUtf8(text);
}

bool FitsCodePage(std::string_view inner, RegistryEncoding encoding) {
  return encoding == RegistryEncoding::kCodePage || Utf8ToCodePage(inner).has_value();
}

std::string Utf16ToCodePage(std::string_view units) {
  return Utf8ToCodePageLossy(Utf16ToInner(units));
}

std::string CodePageToUtf16(std::string_view text) {
  ByteWriter out;
  for (const char c : text) AppendUtf16(out, CodePageToUnicode(static_cast<unsigned char>(c)));
  return out.Release();
}

}  // namespace pw
