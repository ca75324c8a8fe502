#pragma once

#include <array>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "base/cursor.h"

// The bytes of a cardfile (".WMCard"). All numbers are little-endian; texts are single bytes.
//
//   file := header name-pointer layout index-entry{n} key-line names body{n}
//
//   offset         size     part
//   0              60       header, with the card count n
//   60             5        name pointer
//   65             1296     layout
//   1361           64 * n   card index
//   1361 + 64n     128      sort-key line
//   1489 + 64n     2 + L    field names, with their size L before them
//   1491 + 64n + L          card bodies, in the order of the index, without gaps
namespace pw::cardfile {

inline constexpr std::string_view kExtension = ".WMCard";

// A larger file isn't opened: its offsets are 32 bits wide.
inline constexpr std::uint64_t kLargestFile = UINT32_MAX;

inline constexpr std::string_view kLineEnd = "\r\n";

// Stands before a card's time stamp, so that no value may hold it.
inline constexpr char kStampMarker = '\x7F';

// The names of up to three fields whose values make up a card's title.
inline constexpr std::size_t kSortKeys = 3;

// Header.
//
//   offset  width  field    meaning
//   0       7      magic    "WMW300" and a zero byte; not looked at
//   7       1      spare    carried
//   8       2      word8    carried
//   10      2      cards    the card count n
//   12      48     rest     carried
struct Header {
  std::string magic;
  std::uint8_t spare = 0;
  std::uint16_t word8 = 0;
  std::uint16_t cards = 0;
  std::string rest;
};
inline constexpr std::size_t kMagicSize = 7;
inline constexpr std::size_t kHeaderRestSize = 48;
inline constexpr std::size_t kHeaderSize = kMagicSize + 1 + 2 + 2 + kHeaderRestSize;
Header DecodeHeader(ByteReader& in);
void EncodeHeader(ByteWriter& out, const Header& header);

// The header of a file that holds nothing yet.
Header NewHeader();

// Name pointer.
//
//   offset  width  field         meaning
//   60      4      namesOffset   where the field names' size L stands: 1489 + 64n
//   64      1      byte64        carried
struct NamePointer {
  std::uint32_t namesOffset = 0;
  std::uint8_t byte64 = 0;
};
inline constexpr std::size_t kNamePointerSize = 4 + 1;
NamePointer DecodeNamePointer(ByteReader& in);
void EncodeNamePointer(ByteWriter& out, const NamePointer& pointer);

// Layout. Sixteen of the organiser's own records and what stands before them; nothing but the first
// word means anything here.
//
//   offset  width  field        meaning
//   65      4      firstBody    where the first card body stands; set at each save
//   69      4      word69       zero at each save
//   73      1288   rest         carried: a word, two bytes, a half-word, 16 * 80 bytes
struct Layout {
  std::uint32_t firstBody = 0;
  std::uint32_t word69 = 0;
  std::string rest;
};
inline constexpr std::size_t kLayoutRestSize = 4 + 1 + 1 + 2 + 16 * 80;
inline constexpr std::size_t kLayoutSize = 4 + 4 + kLayoutRestSize;
Layout DecodeLayout(ByteReader& in);
void EncodeLayout(ByteWriter& out, const Layout& layout);

// Card index entry.
//
//   offset  width  field         meaning
//   0       4      bodyOffset    where the card's body stands
//   4       4      id            stable identity of the card
//   8       2      word8         carried; zero for a new card
//   10      2      textLength    of the body's text, its time stamp counted in
//   12      2      notesLength   of the body's notes
//   14      2      word14        carried; zero for a new card
//   16      48     title         at most 47 characters, zeros behind them
inline constexpr std::size_t kTitleSize = 48;
struct IndexEntry {
  std::uint32_t bodyOffset = 0;
  std::int32_t id = 0;
  std::uint16_t word8 = 0;
  std::uint16_t textLength = 0;
  std::uint16_t notesLength = 0;
  std::uint16_t word14 = 0;
  std::array<char, kTitleSize> title{};
};
inline constexpr std::size_t kIndexEntrySize = 4 + 4 + 2 + 2 + 2 + 2 + kTitleSize;
IndexEntry DecodeIndexEntry(ByteReader& in);
void EncodeIndexEntry(ByteWriter& out, const IndexEntry& entry);

// A title's text, without the zeros behind it; and a title of at most 47 characters of a text.
std::string_view TitleText(const std::array<char, kTitleSize>& title);
std::array<char, kTitleSize> MakeTitle(std::string_view text);

// Sort-key line, 128 bytes, zeros at its end.
//
//   key-line := name (", " name)*
//
// Read, a comma and any white space behind it part the names, of which the third is all the rest.
// Written, a longer line is cut.
inline constexpr std::size_t kKeyLineSize = 128;
inline constexpr std::string_view kKeySeparator = ", ";
std::array<std::string, kSortKeys> DecodeKeyLine(std::string_view line);
void EncodeKeyLine(ByteWriter& out, std::string_view line);

// Field names.
//
//   names := size:2 (name "\r\n")*
//
// Read, a name is a line without its last character, whatever that is; a line of nothing but its
// line feed is no name. Written, the names end before the first empty one, and before one that the
// size couldn't count in. The organiser itself has room for so many bytes of all of them, and of
// one without its line end.
inline constexpr std::size_t kMostNameBytes = 4096;
inline constexpr std::size_t kLongestFieldName = 1023;
std::vector<std::string> DecodeFieldNames(std::string_view block);
std::string EncodeFieldNames(const std::vector<std::string>& names);

// Where the field names' size stands, and the first card body, for so many cards and bytes of
// names.
std::uint32_t NamesOffset(std::size_t cards);
std::uint32_t FirstBodyOffset(std::size_t cards, std::size_t nameBytes);

// Card body.
//
//   body := text stamp? notes
//   text := (value "\r\n")*      one for each named field
//   stamp := 0x7F byte*          the decimal time of the last change, in seconds since 1970 UTC
//   notes := byte*               the contact log
//
// The index entry tells how long text and stamp are together, and how long the notes.
struct BodyText {
  std::string_view text;   // without the stamp
  std::string_view stamp;  // without its marker; empty if there is none
};

// Parts a body's text at the first marker. An empty stamp is none: its marker stays in the text.
BodyText SplitStamp(std::string_view textAndStamp);

// The marker and the time.
std::string EncodeStamp(std::int32_t seconds);

}  // namespace pw::cardfile
