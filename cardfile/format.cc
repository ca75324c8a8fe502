#include "cardfile/format.h"

#include <algorithm>

#include "base/text.h"

namespace pw::cardfile {
namespace {

constexpr std::string_view kMagic("WMW300", kMagicSize);
constexpr std::size_t kMostCounted = 0xFFFF;

// Takes the first name off a line of them. What is left starts without white space.
std::string TakeKey(std::string_view& line) {
  const std::size_t comma = line.find(',');
  std::string key(line.substr(0, comma));
  line = comma == std::string_view::npos ? std::string_view()
                                         : WithoutLeadingSpace(line.substr(comma + 1));
  return key;
}

}  // namespace

Header DecodeHeader(ByteReader& in) {
  Header header;
  header.magic = in.Take(kMagicSize);
  header.spare = in.U8();
  header.word8 = in.U16();
  header.cards = in.U16();
  header.rest = in.Take(kHeaderRestSize);
  return header;
}

void EncodeHeader(ByteWriter& out, const Header& header) {
  out.Padded(header.magic, kMagicSize);
  out.U8(header.spare);
  out.U16(header.word8);
  out.U16(header.cards);
  out.Padded(header.rest, kHeaderRestSize);
}

Header NewHeader() {
  Header header;
  header.magic = kMagic;
  return header;
}

NamePointer DecodeNamePointer(ByteReader& in) {
  NamePointer pointer;
  pointer.namesOffset = in.U32();
  pointer.byte64 = in.U8();
  return pointer;
}

void EncodeNamePointer(ByteWriter& out, const NamePointer& pointer) {
  out.U32(pointer.namesOffset);
  out.U8(pointer.byte64);
}

Layout DecodeLayout(ByteReader& in) {
  Layout layout;
  layout.firstBody = in.U32();
  layout.word69 = in.U32();
  layout.rest = in.Take(kLayoutRestSize);
  return layout;
}

void EncodeLayout(ByteWriter& out, const Layout& layout) {
  out.U32(layout.firstBody);
  out.U32(layout.word69);
  out.Padded(layout.rest, kLayoutRestSize);
}

IndexEntry DecodeIndexEntry(ByteReader& in) {
  IndexEntry entry;
  entry.bodyOffset = in.U32();
  entry.id = in.I32();
  entry.word8 = in.U16();
  entry.textLength = in.U16();
  entry.notesLength = in.U16();
  entry.word14 = in.U16();
  const std::string_view title = in.Take(kTitleSize);
  std::copy(title.begin(), title.end(), entry.title.begin());
  return entry;
}

void EncodeIndexEntry(ByteWriter& out, const IndexEntry& entry) {
  out.U32(entry.bodyOffset);
  out.I32(entry.id);
  out.U16(entry.word8);
  out.U16(entry.textLength);
  out.U16(entry.notesLength);
  out.U16(entry.word14);
  out.Bytes({entry.title.data(), kTitleSize});
}

std::string_view TitleText(const std::array<char, kTitleSize>& title) {
  return UpToZero({title.data(), kTitleSize});
}

std::array<char, kTitleSize> MakeTitle(std::string_view text) {
  std::array<char, kTitleSize> title{};
  text = UpToZero(text).substr(0, kTitleSize - 1);
  std::copy(text.begin(), text.end(), title.begin());
  return title;
}

std::array<std::string, kSortKeys> DecodeKeyLine(std::string_view line) {
  line = UpToZero(line);
  std::array<std::string, kSortKeys> keys;
  keys[0] = TakeKey(line);
  keys[1] = TakeKey(line);
  keys[2] = line;
  return keys;
}

void EncodeKeyLine(ByteWriter& out, std::string_view line) {
  out.Padded(line, kKeyLineSize);
}

std::vector<std::string> DecodeFieldNames(std::string_view block) {
  std::vector<std::string> names;
  while (!block.empty()) {
    const std::size_t end = std::min(block.find('\n'), block.size());
    if (end > 0) names.emplace_back(block.substr(0, end - 1));
    block.remove_prefix(std::min(end + 1, block.size()));
  }
  return names;
}

std::string EncodeFieldNames(const std::vector<std::string>& names) {
  std::string block;
  for (const std::string& name : names) {
    if (name.empty() || block.size() + name.size() + kLineEnd.size() > kMostCounted) break;
    block += name;
    block += kLineEnd;
  }
  return block;
}

std::uint32_t NamesOffset(std::size_t cards) {
  constexpr std::size_t kBeside = kHeaderSize + kNamePointerSize + kLayoutSize + kKeyLineSize;
  return static_cast<std::uint32_t>(kBeside + kIndexEntrySize * cards);
}

std::uint32_t FirstBodyOffset(std::size_t cards, std::size_t nameBytes) {
  constexpr std::size_t kSizeWord = 2;
  return static_cast<std::uint32_t>(NamesOffset(cards) + kSizeWord + nameBytes);
}

BodyText SplitStamp(std::string_view textAndStamp) {
  const std::size_t marker = textAndStamp.find(kStampMarker);
  if (marker == std::string_view::npos || marker + 1 == textAndStamp.size()) {
    return {textAndStamp, {}};
  }
  return {textAndStamp.substr(0, marker), textAndStamp.substr(marker + 1)};
}

std::string EncodeStamp(std::int32_t seconds) {
  return kStampMarker + FormatLong(seconds);
}

}  // namespace pw::cardfile
