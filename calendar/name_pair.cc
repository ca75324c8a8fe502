#include "calendar/name_pair.h"

namespace {

constexpr std::uint8_t kAbsent = 0;
constexpr std::uint8_t kPresent = 1;
constexpr std::size_t kLengthSize = 4;
constexpr std::size_t kWordsSize = 4 + 4 + 4;

}  // namespace

bool WMCountedString::Take(pw::ByteReader& in) {
  text.clear();
  if (in.U8() == kAbsent) return !in.Short();
  const std::uint32_t length = in.U32();
  if (in.Short() || length > in.Remaining()) return false;
  text = in.Take(length);
  return true;
}

void WMCountedString::Encode(pw::ByteWriter& out) const {
  if (text.empty()) return out.U8(kAbsent);
  out.U8(kPresent);
  out.U32(static_cast<std::uint32_t>(text.size()));
  out.Bytes(text);
}

std::size_t WMCountedString::EncodedSize() const {
  return text.empty() ? 1 : 1 + kLengthSize + text.size();
}

bool WMNamePair::Take(pw::ByteReader& in) {
  first.text.clear();
  second.text.clear();
  if (in.U8() == kAbsent) return !in.Short();
  if (!first.Take(in) || !second.Take(in)) return false;
  a = in.U32();
  b = in.U32();
  c = in.U32();
  return !in.Short();
}

void WMNamePair::Encode(pw::ByteWriter& out) const {
  if (IsEmpty()) return out.U8(kAbsent);
  out.U8(kPresent);
  first.Encode(out);
  second.Encode(out);
  out.U32(a);
  out.U32(b);
  out.U32(c);
}

std::size_t WMNamePair::EncodedSize() const {
  return IsEmpty() ? 1 : 1 + first.EncodedSize() + second.EncodedSize() + kWordsSize;
}

bool WMNamePairList::Take(pw::ByteReader& in) {
  pairs.clear();
  if (in.U8() == kAbsent) return !in.Short();
  for (auto next = in.Peek(); next; next = in.Peek()) {
    if (*next == kAbsent) return true;  // still before its end, by the byte that opened it
    if (!pairs.emplace_back().Take(in)) return false;
  }
  return false;
}

void WMNamePairList::Encode(pw::ByteWriter& out) const {
  if (pairs.empty()) return out.U8(kAbsent);
  out.U8(kPresent);
  for (const WMNamePair& pair : pairs) pair.Encode(out);
  out.U8(kAbsent);
}

std::size_t WMNamePairList::EncodedSize() const {
  if (pairs.empty()) return 1;
  std::size_t size = 1 + 1;
  for (const WMNamePair& pair : pairs) size += pair.EncodedSize();
  return size;
}
