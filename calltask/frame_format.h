#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "timeplace/year_frame.h"

// The bytes that the call file, "CALL.WMW", and the task file, "TASK.WMW", have in common: the
// organiser's frame of files by days, around blocks of records.
//
//   block := record{n} 0x09{96 - n}
//
// No record begins with 0x09, so that one byte tells an empty slot from a record, and a day holds
// at most 96 records.
namespace pw::calltask {

// Of the records in a file.
enum class FormatVersion : std::int32_t { k30 = 30, k50 = 50 };

// Larger ones aren't read. Far beyond what a person writes: 35,000 records take 3 MiB.
inline constexpr std::uint64_t kLargestFile = 256 << 20;

using frame::Header;

// What a header begins with. The text of version 30 says 20.
struct Magics {
  std::string_view version30;
  std::string_view version50;
};

// Nothing if the text up to the header's first zero is neither magic.
std::optional<FormatVersion> VersionOf(const Header& header, const Magics& magics);

// Puts the magic of that version and its zero over the header's first bytes.
void SetMagic(Header& header, const Magics& magics, FormatVersion version);

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

  // What was left out: where the entries of blocks are that aren't within the file, and where
  // tables should be that aren't.
  std::vector<std::size_t> blocksOutside;
  std::vector<std::size_t> cutTables;
};

// Finds the blocks of a file, in the order of its entries; two may have one key. Those of a damaged
// file may overlap.
Frame ReadFrame(std::string_view file);

// The whole file over blocks that aren't empty, by ascending keys. A file has room for 100 years,
// and those behind them are left out. Nothing if the file would outgrow its 32-bit offsets.
std::optional<std::string> WriteFrame(const Header& header, const std::vector<DayBlock>& days);

}  // namespace pw::calltask
