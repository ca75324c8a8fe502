#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <string_view>

#include "base/cursor.h"
#include "calendar/event_detail.h"
#include "calendar/name_pair.h"
#include "timeplace/year_frame.h"

// The bytes of the event file, "EVEN.WMW": the organiser's frame of files by days, with a blob of
// items for each day that has any. All numbers are little-endian, and all but the flags signed.
namespace pw::events {

// Larger files aren't read. Far beyond what a person writes: 50,000 items take 6 MiB.
inline constexpr std::uint64_t kLargestFile = 256 << 20;

inline constexpr std::string_view kMagic50 = "WMWCALE50";
inline constexpr std::string_view kMagic40 = "WMWCALE40";

// 50 for the magic of version 50, 40 for anything else; both have the same layout.
std::int32_t VersionOf(const frame::Header& header);
void SetMagic(frame::Header& header, std::int32_t version);

// What makes a day unreadable.
struct Damage {
  const char* expected;
  std::size_t offset;  // in the day's blob
};

// Day blob.
//
//   blob     := 0xFFEFEFFF position{96}
//   position := 0x09 | column column column 0x09
//   column   := 0x7E | item
//
//   offset  width  field     meaning
//   0       4      magic     0xFFEFEFFF
//   4              position  one for each quarter of an hour; 0x09 for one without an item, else
//                            three columns
//
// The 0x09 behind the columns may be missing. Where an item stands doesn't tell its time.
inline constexpr std::uint32_t kDayMagic = 0xFFEFEFFF;
inline constexpr std::size_t kPositions = 96;
inline constexpr std::size_t kColumns = 3;
inline constexpr char kEndOfPosition = '\x09';
inline constexpr char kEmptyColumn = '\x7E';

// Has each item of a blob taken off the cursor, which then stands behind it. What is behind the
// positions isn't looked at. Gives the first damage, the item's own included.
using TakeItem = std::function<std::optional<Damage>(ByteReader& in)>;
std::optional<Damage> DecodeDay(ByteReader& in, const TakeItem& take);

}  // namespace pw::events

// Header block of an item.
//
//   offset  width  field     meaning
//   0       4      magic     0xFFFEFEFF
//   4       4      size      of this block less 12; computed when it is written
//   8       4      created   first half of the item's key: when it was made; for an occurrence the
//                            key of its series
//   12      4      id        second half of the key
//   16      4      start     in seconds since 1970 UTC
//   20      4      end
//   24      4      modified  when it was last changed, in seconds since 1970 UTC
//   28      4      reserved  carried; 0 when new
//   32      4      flags     bit 2 for a changed occurrence; bits 8 to 23 are 0; bits 24 to 31 the
//                            sensitivity, 0 normal, 1 personal, 2 private; the rest is carried
//   36             label     string, carried
//   then    4      zone      number of the zone in force when it was made, 2560 at most
//   then           place     pair; its first text is the location, the rest is carried
//   then           places    list, carried
//   then    4      end       0xFFFEEFFF
struct WMEventHeader {
  std::int32_t size = 0;
  std::int32_t created = 0;
  std::int32_t id = 0;
  std::int32_t start = 0;
  std::int32_t end = 0;
  std::int32_t modified = 0;
  std::int32_t reserved = 0;
  std::uint32_t flags = 0;
  WMCountedString label;
  std::uint32_t zone = 0;
  WMNamePair place;
  WMNamePairList places;
};

namespace pw::events {

// Detail block of an item, behind its header block.
//
//   offset  width  field     meaning
//   0       4      timeWord
//   4       4      flagWord
//   8              texts     subject and notes
//
//   texts := subject 0x7F notes 0x7E
//
// On reading, 0x10 in a text stands for "~", and the organiser's way is kept where the grammar
// isn't: a block that begins with 0x09 isn't there; the subject may end in 0x7E or 0x09 too, and
// the notes are what then follows; without a subject the notes begin with the 0x7F; the notes may
// end in 0x09, which is then left.
inline constexpr std::uint32_t kItemMagic = 0xFFFEFEFF;
inline constexpr std::uint32_t kItemEnd = 0xFFFEEFFF;
inline constexpr std::uint32_t kLargestZone = 2560;
inline constexpr std::uint32_t kZeroFlags = 0x00FFFF00;
inline constexpr std::uint32_t kChangedOccurrence = 1U << 2;

// Takes an item whose words and texts are those of a new one. A list of places that isn't empty
// makes it unreadable: it is read one byte short.
std::optional<Damage> DecodeItem(ByteReader& in, WMEventHeader& header, WMEventDetail& detail);
void EncodeItem(ByteWriter& out, const WMEventHeader& header, const WMEventDetail& detail);
std::size_t EncodedSize(const WMEventHeader& header, const WMEventDetail& detail);

}  // namespace pw::events
