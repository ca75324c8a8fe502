#include "calendar/event_format.h"

#include <algorithm>

namespace pw::events {
namespace {

constexpr char kSubjectEnd = '\x7F';
constexpr char kNotesEnd = '\x7E';

// What the header block takes beside its parts of no fixed size, and what of it `size` leaves out.
constexpr std::size_t kHeaderFixed = 9 * 4 + 4 + 4;
constexpr std::size_t kSizeLeavesOut = 12;
constexpr std::size_t kDetailFixed = 4 + 4 + 1 + 1;

std::size_t HeaderSize(const WMEventHeader& header) {
  return kHeaderFixed + header.label.EncodedSize() + header.place.EncodedSize() +
         header.places.EncodedSize();
}

// What stands before the first byte that ends it, at which the cursor then is; nothing if there is
// none.
template <class IsEnd>
std::optional<std::string_view> TakeUntil(ByteReader& in, IsEnd isEnd) {
  const std::size_t start = in.Position();
  const std::string_view rest = in.Take(in.Remaining());
  const auto end = std::find_if(rest.begin(), rest.end(), isEnd);
  const auto length = static_cast<std::size_t>(end - rest.begin());
  in.Seek(start + length);
  if (end == rest.end()) return std::nullopt;
  return rest.substr(0, length);
}

bool EndsNotes(char c) {
  return c == kNotesEnd || c == kEndOfPosition;
}

bool EndsSubject(char c) {
  return c == kSubjectEnd || EndsNotes(c);
}

bool TakeTexts(ByteReader& in, WMEventDetail& detail) {
  const auto subject = TakeUntil(in, EndsSubject);
  if (!subject) return false;
  detail.subject = calendar::TextOfStored(*subject);
  if (!subject->empty()) in.Take(1);
  const auto notes = TakeUntil(in, EndsNotes);
  if (!notes) return false;
  detail.notes = calendar::TextOfStored(*notes);
  if (in.Peek() == kNotesEnd) in.Take(1);
  return true;
}

std::optional<Damage> DecodeDetail(ByteReader& in, WMEventDetail& detail) {
  detail.subject.clear();
  detail.notes.clear();
  if (in.Peek() == kEndOfPosition) return std::nullopt;
  const std::size_t at = in.Position();
  detail.timeWord = in.U32();
  detail.flagWord = in.U32();
  if (in.Short() || !TakeTexts(in, detail)) return Damage{"texts that end in 0x7F and 0x7E", at};
  return std::nullopt;
}

std::optional<Damage> DecodeHeader(ByteReader& in, WMEventHeader& header) {
  std::size_t at = in.Position();
  const auto damage = [&](const char* expected) { return Damage{expected, at}; };
  if (in.U32() != kItemMagic) return damage("an item, 0xFFFEFEFF");
  header.size = in.I32();
  header.created = in.I32();
  header.id = in.I32();
  header.start = in.I32();
  header.end = in.I32();
  header.modified = in.I32();
  header.reserved = in.I32();
  header.flags = in.U32();
  if ((header.flags & kZeroFlags) != 0) {
    return damage("an item with the bits 8 to 23 of its flags 0");
  }
  at = in.Position();
  const auto label = in.Peek();
  const bool isLabel = label && (*label == 0 || *label == 1);
  if (!isLabel || !header.label.Take(in)) return damage("a label");
  at = in.Position();
  header.zone = in.U32();
  if (in.Short() || header.zone > kLargestZone) return damage("a zone of 2560 at most");
  at = in.Position();
  if (!header.place.Take(in) || !header.places.Take(in)) return damage("the item's places");
  at = in.Position();
  if (in.U32() != kItemEnd) return damage("the end of an item's head, 0xFFFEEFFF");
  return std::nullopt;
}

bool IsAtItem(ByteReader in) {
  return in.U32() == kItemMagic;
}

std::optional<Damage> DecodeColumn(ByteReader& in, const TakeItem& take) {
  if (in.Peek() == kEmptyColumn) {
    in.Take(1);
    return std::nullopt;
  }
  if (!IsAtItem(in)) return Damage{"an item or an empty column, 0x7E", in.Position()};
  return take(in);
}

}  // namespace

std::int32_t VersionOf(const frame::Header& header) {
  return frame::MagicOf(header) == kMagic50 ? 50 : 40;
}

void SetMagic(frame::Header& header, std::int32_t version) {
  frame::SetMagic(header, version == 50 ? kMagic50 : kMagic40);
}

std::optional<Damage> DecodeDay(ByteReader& in, const TakeItem& take) {
  const std::size_t start = in.Position();
  if (in.U32() != kDayMagic) return Damage{"a day, 0xFFEFEFFF", start};
  for (std::size_t position = 0; position < kPositions; ++position) {
    const auto next = in.Peek();
    if (!next) return Damage{"96 positions", in.Position()};
    for (std::size_t column = 0; *next != kEndOfPosition && column < kColumns; ++column) {
      if (const auto damage = DecodeColumn(in, take)) return damage;
    }
    if (in.Peek() == kEndOfPosition) in.Take(1);
  }
  return std::nullopt;
}

std::optional<Damage> DecodeItem(ByteReader& in, WMEventHeader& header, WMEventDetail& detail) {
  if (const auto damage = DecodeHeader(in, header)) return damage;
  return DecodeDetail(in, detail);
}

void EncodeItem(ByteWriter& out, const WMEventHeader& header, const WMEventDetail& detail) {
  out.U32(kItemMagic);
  out.I32(static_cast<std::int32_t>(HeaderSize(header) - kSizeLeavesOut));
  out.I32(header.created);
  out.I32(header.id);
  out.I32(header.start);
  out.I32(header.end);
  out.I32(header.modified);
  out.I32(header.reserved);
  out.U32(header.flags);
  header.label.Encode(out);
  out.U32(header.zone);
  header.place.Encode(out);
  header.places.Encode(out);
  out.U32(kItemEnd);

  out.U32(detail.timeWord);
  out.U32(detail.flagWord);
  calendar::EncodeText(out, detail.subject);
  out.U8(static_cast<std::uint8_t>(kSubjectEnd));
  calendar::EncodeText(out, detail.notes);
  out.U8(static_cast<std::uint8_t>(kNotesEnd));
}

std::size_t EncodedSize(const WMEventHeader& header, const WMEventDetail& detail) {
  return HeaderSize(header) + kDetailFixed + detail.subject.size() + detail.notes.size();
}

}  // namespace pw::events
