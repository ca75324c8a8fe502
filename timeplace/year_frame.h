#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "base/cursor.h"

// The frame of the organiser's files by days: the calls, the tasks and the events. All numbers are
// little-endian.
//
//   file  := header year-entry{100} year*
//   year  := day-entry{366} block*
//
//   offset  size  part
//   0       26    header
//   26      600   year index
//   626           years, ascending; the blocks of each by ascending day
namespace pw::frame {

// Header.
//
//   offset  width  field  meaning
//   0       26     bytes  the magic and a zero; what is behind that is carried, zero when new
inline constexpr std::size_t kHeaderSize = 26;
using Header = std::array<char, kHeaderSize>;

// The text up to the first zero, and one put in with its zero over the first bytes. A magic is
// shorter than the header.
std::string_view MagicOf(const Header& header);
void SetMagic(Header& header, std::string_view magic);

// Year entry. Those that aren't empty are written first, in ascending years. Of one with a year and
// no offset readers think differently.
//
//   offset  width  field   meaning
//   0       2      year    since 1900, signed; 0 or below for an empty entry
//   2       4      offset  of the year's table of day entries; 0 for an empty entry
struct YearEntry {
  std::int16_t year = 0;
  std::uint32_t offset = 0;
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
//   9       4      size    of the block; 0 for a day without one
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

// The bytes that an entry names; nothing if they aren't within the file.
std::optional<std::string_view> BlockOf(std::string_view file, const DayEntry& entry);

// How much more of a file's blocks is to be read. Those of a whole file don't overlap, so that
// reading them all is reading the file once. A damaged file may name the same bytes for every day
// of a hundred years: when twice its length has been read no further block is.
class ReadingBudget {
 public:
  explicit ReadingBudget(std::size_t fileSize) : bytesLeft(2 * fileSize) {}

  bool IsSpent() const { return bytesLeft == 0; }
  void Spend(std::size_t bytes) { bytesLeft -= bytes < bytesLeft ? bytes : bytesLeft; }

 private:
  std::size_t bytesLeft;
};

// Blocks that were read, none of which shares a byte with another.
class TakenBlocks {
 public:
  // Takes so many bytes from an offset on. False, and nothing taken, if one of them is taken
  // already.
  bool Take(std::size_t offset, std::size_t size);

 private:
  std::map<std::size_t, std::size_t> ends;  // by offset
};

// What stands under a day.
struct DayBlock {
  std::int16_t year = 0;  // since 1900
  std::uint16_t day = 0;  // of the year, from 0
  std::size_t size = 0;   // not 0
};

// The whole file over blocks by ascending days, of which `encode` appends the one of an index: as
// many bytes as its size says. A file has room for 100 years, and those behind them are left out.
// Nothing if the file would outgrow its 32-bit offsets.
using EncodeBlock = std::function<void(ByteWriter& out, std::size_t index)>;
std::optional<std::string> WriteFile(const Header& header, const std::vector<DayBlock>& days,
                                     const EncodeBlock& encode);

// The file of no days.
std::string WriteEmptyFile(const Header& header);

}  // namespace pw::frame
