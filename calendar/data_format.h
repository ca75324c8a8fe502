#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

#include "base/cursor.h"

// The bytes of the data file, "DATA.WMW", and of the template of holidays, "Holidef.dat": the
// entries of the calendar that have no time of day. All numbers are little-endian; texts are single
// bytes.
//
//   file    := header section-table section*
//   section := special-day{n} | multi-day{n}
//
//   offset  size  part
//   0       26    header
//   26      100   section table
//   126           sections, in the order of the table
//
// Below, the columns 50 and 35 give the offsets in the two versions of the records. A file has
// records of one of them.
namespace pw::datafile {

enum class FormatVersion : std::int32_t { k35 = 35, k50 = 50 };

// Of what is read of a file, far beyond what its table can count.
inline constexpr std::size_t kLargestFile = 256 << 20;

// Header.
//
//   offset  width  field  meaning
//   0       10     magic  "WMWDATA50" or "XQXDATA35", and a zero, which is taken for granted
//   10      16     rest   carried; zero when new
inline constexpr std::size_t kMagicSize = 10;
inline constexpr std::size_t kHeaderSize = kMagicSize + 16;
using Header = std::array<char, kHeaderSize>;

// Nothing for a magic of another kind.
std::optional<FormatVersion> VersionOf(const Header& header);
void SetMagic(Header& header, FormatVersion version);

// Text of an entry: 49 bytes, zeros behind it. A new one has at most 47 characters.
inline constexpr std::size_t kSubjectSize = 49;
inline constexpr std::size_t kLongestSubject = 47;
using Subject = std::array<char, kSubjectSize>;

// Of a longer text its first characters.
Subject MakeSubject(std::string_view text);

// The text up to a zero or through the 48th byte, as ids and checksums have it, and as a span is
// read. Points into the subject.
std::string_view SubjectText(const Subject& subject);

// The text up to a zero or through the last byte, as a special day is read. Points into the
// subject.
std::string_view WholeSubjectText(const Subject& subject);

}  // namespace pw::datafile

// Entry of the section table. The table's first entry of a kind counts; another one is carried, as
// are those of unknown kinds, but not what they name.
//
//   offset  width  field   meaning
//   0       2      tag     what the section holds; 0 for a free entry
//   2       2      count   of the records
//   4       2      bytes   71 for each record, in both versions; not looked at
//   6       4      offset  of the section; any below 126 is read as 126
struct WMDataSection {
  std::int16_t tag = 0;
  std::uint16_t count = 0;
  std::uint16_t bytes = 0;
  std::int32_t offset = 0;
};

// Special day: a holiday or another named date, of one year or of all.
//
//   50  35  width  field      meaning
//   0       4      created    the two words of the record's key: when it was made, in seconds since
//   4       4      id         1970 UTC, and a number
//   8       4      stamp      0 in a record made here, and no change sets it
//   12  0   1      byDate     1 for a month and a day, 0 for a weekday of a month
//   13  1   1      year       since 1900, 80 to 130; 0 for every year
//   14  2   1      month      from 0
//   15  3   1      day        from 1
//   16  4   1      week       of the month, 1 to 5; 5 is the last one
//   17  5   1      weekday    0 for Sunday
//   18  6   2      alarm      not 0 for an alarm
//   20  8   1      alarmDays  its lead
//   21  9   1      spare      0
//   22  10  49     subject
struct WMSpecialDay {
  std::int32_t created = 0;
  std::uint32_t id = 0;
  std::int32_t stamp = 0;
  std::uint8_t byDate = 1;
  std::uint8_t year = 0;
  std::uint8_t month = 0;
  std::uint8_t day = 0;
  std::uint8_t week = 0;
  std::uint8_t weekday = 0;
  std::uint16_t alarm = 0;
  std::uint8_t alarmDays = 0;
  std::uint8_t spare = 0;
  pw::datafile::Subject subject{};

  friend bool operator==(const WMSpecialDay&, const WMSpecialDay&) = default;
};

// Multi-day span: a banner over several dates.
//
//   50  35  width  field    meaning
//   0       4      created  as in a special day
//   4       4      id
//   8       4      stamp
//   12  0   4      start    the first day, in seconds since 1970 UTC: of an entry with times its
//                           begin, of one without where its date begins in the working zone
//   16  4   4      end      the last day, likewise
//   20  8   1      flag     carried; 0 when new
//   21  9   1      kind     carried; 5 when new
//   22  10  49     subject
struct WMMultiDay {
  std::int32_t created = 0;
  std::uint32_t id = 0;
  std::int32_t stamp = 0;
  std::int32_t start = 0;
  std::int32_t end = 0;
  std::uint8_t flag = 0;
  std::uint8_t kind = 5;
  pw::datafile::Subject subject{};

  friend bool operator==(const WMMultiDay&, const WMMultiDay&) = default;
};

namespace pw::datafile {

WMDataSection DecodeSection(ByteReader& in);
void EncodeSection(ByteWriter& out, const WMDataSection& section);

inline constexpr std::int16_t kFreeTag = 0;
inline constexpr std::int16_t kSpecialDayTag = 0x32DB;
inline constexpr std::int16_t kMultiDayTag = 0x32DC;

inline constexpr std::size_t kSections = 10;
inline constexpr std::size_t kSectionSize = 2 + 2 + 2 + 4;
inline constexpr std::size_t kTableSize = kSections * kSectionSize;
inline constexpr std::size_t kFirstSection = kHeaderSize + kTableSize;
using SectionTable = std::array<WMDataSection, kSections>;
std::size_t SectionEntryOffset(std::size_t index);

// That of a new file: no special days, at 126.
SectionTable NewTable();

// The first entry of that tag; null if there is none.
WMDataSection* FindSection(SectionTable& table, std::int16_t tag);

// Puts in how many records each section has and where it stands. Counts and bytes are cut to 16
// bits, and what is behind a section of more than `kMostRecords` stands elsewhere. So does what is
// behind an entry of an unknown kind or the second of a kind, whose bytes aren't written, and in
// version 35, whose records are shorter than the bytes that the entries say, what is behind the
// first section. The organiser has it so.
void PlaceSections(SectionTable& table, std::size_t specialDays, std::size_t multiDays);

// In version 50 any 71 bytes come back as they are. In version 35 a subject ends at its zero, that
// of a multi-day span at its 48th character too.
inline constexpr std::size_t kKeySize = 4 + 4 + 4;
inline constexpr std::size_t kRecordSize35 = 10 + kSubjectSize;
inline constexpr std::size_t kRecordSize50 = kKeySize + kRecordSize35;
inline constexpr std::size_t kMostRecords = UINT16_MAX / kRecordSize50;
std::size_t RecordSize(FormatVersion version);
WMSpecialDay DecodeSpecialDay(ByteReader& in, FormatVersion version);
void EncodeRecord(ByteWriter& out, const WMSpecialDay& day, FormatVersion version);
WMMultiDay DecodeMultiDay(ByteReader& in, FormatVersion version);
void EncodeRecord(ByteWriter& out, const WMMultiDay& span, FormatVersion version);

// A span isn't taken in unless both its days are between these, both included.
inline constexpr std::int32_t kFirstMoment = 300'000'000;
inline constexpr std::int32_t kLastMoment = 2'000'000'000;
bool IsInRange(const WMMultiDay& span);

// What a record is known by: in version 50 its key, else what it holds, so that two may share it.
//
//   special-day := "SpecialDay:" (created "+" id | subject "+" date "+" rest)
//   multi-day   := "MultiDay:"   (created "+" id | subject "+" start)
//
// Numbers are signed. Date and rest are the four bytes from `byDate` and from `week` on.
std::string IdText(const WMSpecialDay& day, FormatVersion version);
std::string IdText(const WMMultiDay& span, FormatVersion version);

// What a special day holds beside its key and its text, by the words at 12, 16 and 20 of version
// 50, signed.
std::vector<std::int32_t> WordsOf(const WMSpecialDay& day);

// A place in a file where something else was expected.
struct Damage {
  const char* expected;  // goes on from "expected"
  std::size_t offset;
  std::size_t recordsLost;  // not taken in because of it
};

using Record = std::variant<WMSpecialDay, WMMultiDay>;

struct File {
  Header header{};                       // what there is of it
  std::optional<FormatVersion> version;  // nothing else is read without one
  SectionTable table = NewTable();
  std::vector<Record> records;  // in the order of the sections; spans out of range too
  std::vector<Damage> damage;
};

// Takes what there is of a file: of a section that ends early its whole records, and of sections
// that overlap as many bytes as the file has behind its table. A table that isn't whole is that of
// a new file.
File DecodeFile(std::string_view bytes);

// Writes the table as it is, and each list once, in the order of the table. A list without an entry
// is left out.
std::string EncodeFile(const Header& header, const SectionTable& table, FormatVersion version,
                       const std::vector<WMSpecialDay>& specialDays,
                       const std::vector<WMMultiDay>& multiDays);

// How many of the records that are taken in from a file are lost when it is saved in that version:
// they aren't there, as they were, when it is read again. They come on top of those that its damage
// counts.
std::size_t LostAtSave(const File& file, FormatVersion version);

// A file that holds nothing.
std::string EncodeEmptyFile(FormatVersion version);

}  // namespace pw::datafile
