#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "base/cursor.h"

// The bytes that the call file, "CALL.WMW", and the task file, "TASK.WMW", have in common: a
// calendar of day blocks. All numbers are little-endian.
//
//   file  := header year-entry{100} year*
//   year  := day-entry{366} block*
//   block := record{n} 0x09{96 - n}
//
//   offset  size  part
//   0       26    header
//   26      600   year index
//   626           years, ascending; the blocks of each by ascending day
//
// No record begins with 0x09, so that one byte tells an empty slot from a record, and a day holds
// at most 96 records.
namespace pw::calltask {

// Of the records in a file.
enum class FormatVersion : std::int32_t { k30 = 30, k50 = 50 };

// Larger ones aren't read. Far beyond what a person writes: 35,000 records take 3 MiB.
inline constexpr std::uint64_t kLargestFile = 256 << 20;

// Header.
//
//   offset  width  field  meaning
//   0       26     bytes  the magic and a zero; what is behind that is carried, zero when new
inline constexpr std::size_t kHeaderSize = 26;
using Header = std::array<char, kHeaderSize>;

// What a header begins with. The text of version 30 says 20.
struct Magics {
  std::string_view version30;
  std::string_view version50;
};

// Nothing if the text up to the header's first zero is neither magic.
std::optional<FormatVersion> VersionOf(const Header& header, const Magics& magics);

// Puts the magic of that version and its zero over the header's first bytes.
void SetMagic(Header& header, const Magics& magics, FormatVersion version);

// Year entry. An entry is empty where either field says so. Those that aren't are written first, in
// ascending years, and read in any order.
//
//   offset  width  field   meaning
//   0       2      year    since 1900, signed; 0 or below for an empty entry
//   2       4      offset  of the year's table of day entries; 0 for an empty entry
struct YearEntry {
  std::int16_t year = 0;
  std::uint32_t offset = 0;

  bool IsEmpty() const { return year <= 0 || offset == 0; }
};
inline constexpr std::size_t kYearEntries = 100;
inline constexpr std::size_t kYearEntrySize = 2 + 4;
inline constexpr std::size_t kYearIndexSize = kYearEntries * kYearEntrySize;
YearEntry DecodeYearEntry(ByteReader& in);
void EncodeYearEntry(ByteWriter& out, const YearEntry& entry);

// Day entry. A year has one for each day, and one more that only leap years use.
//
//   offset  width  field   meaning
//   0       4      offset  of the block; without one, where it would stand
//   4       4              zero
//   8       1              zero
//   9       4      size    of the block; 0 for a day without records
//   13      4              zero
struct DayEntry {
  std::uint32_t offset = 0;
  std::uint32_t size = 0;
};
inline constexpr std::size_t kDayEntries = 366;
inline constexpr std::size_t kDayEntrySize = 4 + 4 + 1 + 4 + 4;
inline constexpr std::size_t kYearTableSize = kDayEntries * kDayEntrySize;
DayEntry DecodeDayEntry(ByteReader& in);
void EncodeDayEntry(ByteWriter& out, const DayEntry& entry);

inline constexpr std::size_t kFirstTable = kHeaderSize + kYearIndexSize;

// The slots of a block, and the byte of an empty one.
inline constexpr std::size_t kSlots = 96;
inline constexpr char kEmptySlot = '\x09';

// Days are known by a 16-bit key: (year - 1990) * 366 and the day of the year from 0. What a file
// has outside of 1 January 1990 to 22 January 2169 wraps around, as the organiser has it do.
inline constexpr std::int32_t kFirstYear = 1990;
inline constexpr std::int32_t kLastYear = 2005;
std::uint16_t FirstKeyOf(std::int16_t yearSince1900);
std::int32_t YearOfKey(std::uint16_t key);
std::int32_t DayOfKey(std::uint16_t key);

// The key that a new record of this date is filed under. The organiser files by the years 1990 to
// 2005; the records of all others share the key 0.
inline constexpr std::uint16_t kCatchAllKey = 0;
std::uint16_t FilingKey(std::int32_t year, std::int32_t dayOfYear);

// The records of one day. The bytes aren't owned.
struct DayBlock {
  std::uint16_t key = 0;
  std::string_view bytes;
};

struct Frame {
  Header header{};
  bool hasHeader = false;  // the file has a whole one
  bool isWhole = false;    // the year index and all tables that it names are whole too
  std::vector<DayBlock> days;
  std::size_t blocksOutside = 0;  // blocks that aren't within the file, which were left out
};

// Finds the blocks of a file, in the order of its entries; two may have one key. Those of a damaged
// file may overlap.
Frame ReadFrame(std::string_view file);

// The whole file over blocks that aren't empty, by ascending keys. A file has room for 100 years,
// and those behind them are left out. Nothing if the file would outgrow its 32-bit offsets.
std::optional<std::string> WriteFrame(const Header& header, const std::vector<DayBlock>& days);

}  // namespace pw::calltask
