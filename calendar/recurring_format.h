#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "base/cursor.h"
#include "calendar/event_detail.h"
#include "calendar/recurrence_rule.h"

class WMEventItem;

// One date that a series doesn't have as its rule says.
struct WMRecurringException {
  std::uint32_t itemCreated = 0;  // the key of the item that takes its place in the event file
  std::uint32_t itemId = 0;
  bool deleted = false;    // there is no such item
  std::int32_t date = 0;   // of the occurrence as the rule has it, in seconds
  std::int32_t stamp = 0;  // the start of what took its place, in seconds

  // That item, once it was found; in memory only, and not owned.
  const WMEventItem* instance = nullptr;
};

// The bytes of the recurring file, "RECR.WMW": the series of the calendar, whose occurrences stand
// in the event file. All numbers are little-endian.
//
//   file := header index-entry{n} record{n}
//
//   offset     size     part
//   0          28       header, with the record count n
//   28         8 * n    index
//   28 + 8n             records, in the order of the index, without gaps
namespace pw::recurring {

// A larger file is not read, and not written over. Far beyond what a person writes.
inline constexpr std::uint64_t kLargestFile = 256 << 20;

// Of the records in a file.
enum class FormatVersion : std::int32_t { k30 = 30, k50 = 50 };

// What a damaged place should have held.
struct Damage {
  const char* expected;
  std::size_t offset;
};

// Header.
//
//   offset  width  field  meaning
//   0       26     text   the magic and a zero; what is behind that is carried, zero when new
//   26      2      count  of index entries, signed; a negative one is none
inline constexpr std::size_t kHeaderTextSize = 26;
struct Header {
  std::array<char, kHeaderTextSize> text{};
  std::int16_t count = 0;
};
inline constexpr std::size_t kHeaderSize = kHeaderTextSize + 2;
Header DecodeHeader(ByteReader& in);
void EncodeHeader(ByteWriter& out, const Header& header);

// The version by the text up to its first zero. What isn't the magic of version 50 is version 30.
FormatVersion VersionOf(const Header& header);

// Puts the magic of that version and its zero over the header's first bytes.
void SetMagic(Header& header, FormatVersion version);

// Index entry.
//
//   offset  width  field   meaning
//   0       2      tag     0x32C9; an entry with another one is passed over
//   2       2      length  of the record
//   4       4      offset  of the record
struct IndexEntry {
  std::uint16_t tag = 0;
  std::uint16_t length = 0;
  std::uint32_t offset = 0;
};
inline constexpr std::uint16_t kRecordTag = 0x32C9;
inline constexpr std::size_t kIndexEntrySize = 2 + 2 + 4;
IndexEntry DecodeIndexEntry(ByteReader& in);
void EncodeIndexEntry(ByteWriter& out, const IndexEntry& entry);

// Exception.
//
//   offset  width  field        meaning
//   0       4      itemCreated  for a changed occurrence the key of its item
//   4       4      itemId
//   8       4      deleted      not 0 for a deleted occurrence
//   12      4      date         that the occurrence has by the rule
//   16      4      stamp        when it starts instead
inline constexpr std::size_t kExceptionSize = 4 + 4 + 4 + 4 + 4;
WMRecurringException DecodeException(ByteReader& in);
void EncodeException(ByteWriter& out, const WMRecurringException& exception);

// A series. A new one has a time stamp that says so.
inline constexpr std::int32_t kNotStamped = 0x35957F4A;
inline constexpr std::size_t kSlackSize = 4;
struct Record {
  WMEventDetail detail;
  WMRecurrenceRule rule;
  std::int32_t firstStart = 0;
  std::int32_t firstEnd = 0;
  std::int32_t zone = 0;
  std::int32_t key = 0;
  std::int32_t modified = kNotStamped;
  std::int32_t reserved1 = 0;
  std::int32_t reserved2 = 0;
  std::vector<WMRecurringException> exceptions;
  std::array<char, kSlackSize> slack{};
};

// Record of version 50, and of version 30, which has no more than what stands in both columns.
//
//   50       30  width   field        meaning
//   0        0   4       firstDay     start of the range, in seconds
//   4        4   4       lastDay      its end
//   8            4       firstStart   the date of `firstDay` with the hour and minute of the start
//   12           4       firstEnd     the same
//   16           4       zone         number of the zone whose clocks give the dates
//   20           4       key          the occurrences in the event file have it as `created`
//   24           4       modified     time of the last change, in seconds since 1970 UTC
//   28           4       reserved1    carried
//   32           4       reserved2    carried
//   36       8   2       startSlot    quarter of an hour of the start, from 0
//   38       10  2       patternKind  1 by weekday of the month, 2 by date, 3 weekly, 4 daily
//   40       12  2       interval     in days, weeks or months
//   42       14  1       weekMask     weeks of the month, bit 4 for the fifth or last
//   43       15  4       dayMask      days of the month, bit 31 for the last
//   47       19  1       weekdayMask  bit 0 for Sunday
//   48       20  2       reserved3    carried
//   50           4       count        of the exceptions
//   54           20 * n  exceptions
//   then     22  4       timeWord
//   then     26  4       flagWord
//   then     30          texts
//   then         4       slack        carried, zero when new
//
//   texts := subject 0x7F notes 0x09
//
// On reading, 0x10 in a text stands for "~", and the organiser's way is kept where the grammar
// isn't: the subject may end in 0x09 too, and what then follows is the notes; without a subject the
// notes begin with the 0x7F; the notes may end with the record.
inline constexpr std::size_t kRuleTailSize = 2 + 2 + 2 + 1 + 4 + 1 + 2;
inline constexpr std::size_t kTextEnds = 1 + 1;
inline constexpr std::size_t kFixed30 = 4 + 4 + kRuleTailSize + 4 + 4 + kTextEnds;
inline constexpr std::size_t kFixed50 =
    4 + 4 + 7 * 4 + kRuleTailSize + 4 + 4 + 4 + kTextEnds + kSlackSize;

// A shorter record is no record.
inline constexpr std::size_t kShortestRecord = 30;

// Longer than its index entry can say. Written, such a record is as many zeros as the low 16 bits
// of its length.
inline constexpr std::size_t kLongestRecord = 0xFFFF;
std::size_t RecordSize(FormatVersion version, const Record& record);

// Whether nothing is read of a record: it is too short, or begins with 0x09.
bool IsNoRecord(std::string_view bytes);

// A record that begins with 0x09 is a new one, and one that is too short is all zeros, but for an
// interval of 1 in both. Of version 50, what is missing at the end is zero, and exceptions count if
// they are whole; `firstStart` and `firstEnd` are computed anew. Version 30 leaves zero what it
// hasn't got. The offset of the damage counts from the start of the record.
struct DecodedRecord {
  Record record;
  std::optional<Damage> damage;  // the first, if there is any
};
DecodedRecord DecodeRecord(FormatVersion version, std::string_view bytes);
void EncodeRecord(ByteWriter& out, FormatVersion version, const Record& record);

// Where a record stands. The bytes aren't owned.
struct StoredRecord {
  std::uint32_t offset = 0;
  std::string_view bytes;
};

// The records of a file, as far as they can be read: the first one that isn't within the file ends
// them. So does one with which they would be longer together than the file is, as then some
// overlap.
struct Frame {
  bool hasHeader = false;     // the file has a whole one
  bool hasAllRecords = true;  // none was found outside of the file
  Header header;
  FormatVersion version{};
  std::vector<StoredRecord> records;
  std::vector<Damage> damages;
};
Frame ReadFrame(std::string_view file);

// What is behind the header of a file with these records: their index, and they themselves.
std::string EncodeBody(FormatVersion version, const std::vector<const Record*>& records);

}  // namespace pw::recurring
