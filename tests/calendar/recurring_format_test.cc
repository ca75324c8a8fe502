#include "calendar/recurring_format.h"

#include <gtest/gtest.h>

#include "tests/support/recurring_file_builder.h"

namespace {

namespace recurring = pw::recurring;
using pw::test::RecurringFileBytes;
using pw::test::SeriesBytes;
using pw::test::Word;
using recurring::DecodedRecord;
using recurring::DecodeRecord;
using recurring::FormatVersion;
using recurring::Frame;
using recurring::Record;

std::string Encode(FormatVersion version, const Record& record) {
  pw::ByteWriter out;
  recurring::EncodeRecord(out, version, record);
  return out.Release();
}

// The damage as a text, for its place in a message.
std::string TextOf(const recurring::Damage& damage) {
  return std::string(damage.expected) + " @" + std::to_string(damage.offset);
}
std::string DamageOf(const DecodedRecord& decoded) {
  return decoded.damage ? TextOf(*decoded.damage) : "";
}

// Nothing of a record of zeros but its interval.
void ExpectZeros(const Record& record) {
  EXPECT_EQ(record.rule, WMRecurrenceRule());
  EXPECT_EQ(record.modified | record.key | record.zone | record.firstStart, 0);
  EXPECT_EQ(record.detail.timeWord | record.detail.flagWord, 0U);
}

TEST(RecurringFormatTest, ReadsEveryFieldOfARecord) {
  SeriesBytes series;
  series.zone = 3, series.key = 4, series.reserved1 = 5, series.reserved2 = 6;
  series.kind = 1, series.interval = 0xFFFE, series.weekMask = 7, series.dayMask = 0x80000008;
  series.weekdayMask = 9, series.reserved3 = 10;
  series.exceptions = {{11, 12, 256, 14, -15}};
  series.subject =
      "a\x10"
      "b";
  for (const auto version : {FormatVersion::k30, FormatVersion::k50}) {
    const bool is50 = version == FormatVersion::k50;
    const auto [record, damage] = DecodeRecord(version, is50 ? series.Build50() : series.Build30());
    EXPECT_FALSE(damage);
    const WMRecurrenceRule rule{888829200, 888915600, 37, 1, -2, 7, 0x80000008, 9, 10};
    EXPECT_EQ(record.rule, rule);
    EXPECT_EQ(record.detail.StartMinute(), 15);
    EXPECT_EQ(record.detail.flagWord, 0x808080C0);
    EXPECT_EQ(record.detail.subject, "a~b");
    EXPECT_EQ(record.detail.notes, "notes");
    EXPECT_EQ(record.firstStart, is50 ? 888830100 : 0);
    EXPECT_EQ(record.firstEnd, record.firstStart);
    EXPECT_EQ(record.zone, is50 ? 3 : 0);
    EXPECT_EQ(record.key, is50 ? 4 : 0);
    EXPECT_EQ(record.modified, is50 ? 890000000 : 0);
    EXPECT_EQ(record.reserved1, is50 ? 5 : 0);
    EXPECT_EQ(record.reserved2, is50 ? 6 : 0);
    ASSERT_EQ(record.exceptions.size(), is50 ? 1U : 0U);
    if (!is50) continue;
    const WMRecurringException& exception = record.exceptions[0];
    EXPECT_EQ(exception.itemCreated, 11U);
    EXPECT_EQ(exception.itemId, 12U);
    EXPECT_TRUE(exception.deleted);
    EXPECT_EQ(exception.date, 14);
    EXPECT_EQ(exception.stamp, -15);
    EXPECT_EQ(exception.instance, nullptr);
  }
}

TEST(RecurringFormatTest, AWholeRecordHasItsSize) {
  SeriesBytes sized{.subject = "five.", .notes = "seven.."};
  sized.exceptions.resize(3);
  const std::string bytes = sized.Build50();
  ASSERT_EQ(bytes.size(), 140U) << "68 + 60 + 12, of the builder itself";
  const Record record = DecodeRecord(FormatVersion::k50, bytes).record;
  EXPECT_EQ(recurring::RecordSize(FormatVersion::k50, record), 140U);
  EXPECT_EQ(Encode(FormatVersion::k50, record), bytes);
}

// The times of the first day are the organiser's to compute, and four bytes at the end anybody's.
TEST(RecurringFormatTest, WhatIsNotTrustedIsComputedAndANewRecordHasZeros) {
  std::string bytes = SeriesBytes().Build50();
  std::string distrusted = bytes;
  distrusted.replace(8, 8, 8, '\xEE');
  EXPECT_EQ(Encode(FormatVersion::k50, DecodeRecord(FormatVersion::k50, distrusted).record), bytes);
  // Nine o'clock and 37 seconds.
  const std::string odd = SeriesBytes{.firstDay = 888829237}.Build50();
  EXPECT_EQ(DecodeRecord(FormatVersion::k50, odd).record.firstStart, 888830100);

  const std::string empty = std::string(24, '\0') + Word(0x35957F4A, 4) + std::string(12, '\0') +
                            Word(1, 2) + std::string(12, '\0') + Word(0x8080808080808080, 8) +
                            "\x7F\x09" + Word(0, 4);
  EXPECT_EQ(Encode(FormatVersion::k50, Record()), empty);
}

TEST(RecurringFormatTest, TextsEndAsTheOrganiserHasThemEnd) {
  const std::string words = SeriesBytes().Build30().substr(0, 30);
  const struct {
    std::string texts, subject, notes, damage, again;
  } cases[] = {
      {"s\x7Fn\x09", "s", "n", "", "s\x7Fn\x09"},
      {"s\x7F\x09", "s", "", "", "s\x7F\x09"},
      // Without a subject the notes begin with its end, which becomes a blank.
      {"\x7F\x09", "", "\x7F", "", "\x7F \x09"},
      {"\x7Fn\x09", "", "\x7Fn", "", "\x7F n\x09"},
      {"s\x09n\x09", "s", "n", "0x7F behind the subject @31", "s\x7Fn\x09"},
      {"\x09", "", "", "0x7F behind the subject @30", "\x7F\x09"},
      {"s\x7Fn", "s", "n", "0x09 behind the notes @33", "s\x7Fn\x09"},
      {"subj", "subj", "", "0x7F behind the subject @34", "subj\x7F\x09"},
      {"", "", "", "0x7F behind the subject @30", "\x7F\x09"},
      {"s\x7Fn\x09more", "s", "n", "the end of the record @34", "s\x7Fn\x09"},
      {"~\x10\x7F\x7F~\x10\x09", "~~", "\x7F~~", "", "\x10\x10\x7F \x10\x10\x09"},
  };
  for (const auto& each : cases) {
    const DecodedRecord decoded = DecodeRecord(FormatVersion::k30, words + each.texts);
    EXPECT_EQ(decoded.record.detail.subject, each.subject) << each.texts;
    EXPECT_EQ(decoded.record.detail.notes, each.notes) << each.texts;
    EXPECT_EQ(DamageOf(decoded), each.damage) << each.texts;
    EXPECT_EQ(Encode(FormatVersion::k30, decoded.record), words + each.again) << each.texts;
  }
}

TEST(RecurringFormatTest, OfAShortRecordTheRestIsZero) {
  SeriesBytes series;
  series.zone = 3, series.key = 4, series.reserved1 = 0x11223344;
  series.subject = series.notes = "";
  const std::string whole = series.Build50();
  ASSERT_EQ(whole.size(), 68U);
  for (const std::size_t length : {0, 29}) {
    const DecodedRecord decoded = DecodeRecord(FormatVersion::k50, whole.substr(0, length));
    ExpectZeros(decoded.record);
    EXPECT_EQ(DamageOf(decoded), "a record of 30 bytes or more @" + std::to_string(length));
  }
  // A field that is cut has its first bytes.
  DecodedRecord decoded = DecodeRecord(FormatVersion::k50, whole.substr(0, 30));
  EXPECT_EQ(DamageOf(decoded), "a record of 68 bytes or more @30");
  EXPECT_EQ(decoded.record.key, 4);
  EXPECT_EQ(decoded.record.reserved1, 0x3344);
  EXPECT_EQ(decoded.record.rule.interval, 0);
  EXPECT_EQ(decoded.record.firstStart, series.startOfFirstDay);
  decoded = DecodeRecord(FormatVersion::k50, whole.substr(0, 57));
  EXPECT_EQ(decoded.record.detail.timeWord, 0x8F8A80U);
  EXPECT_EQ(decoded.record.detail.flagWord, 0U);
  decoded = DecodeRecord(FormatVersion::k50, whole.substr(0, 62) + "text");
  EXPECT_EQ(decoded.record.detail.subject, "text") << "a text has no zeros behind it";
  EXPECT_EQ(DamageOf(DecodeRecord(FormatVersion::k50, whole.substr(0, 67) + 'x')), "");

  std::string begins9 = whole;
  begins9[0] = '\x09';
  decoded = DecodeRecord(FormatVersion::k50, begins9);
  EXPECT_EQ(DamageOf(decoded), "another first byte than 0x09 @0");
  EXPECT_EQ(Encode(FormatVersion::k50, decoded.record), Encode(FormatVersion::k50, Record()));
}

TEST(RecurringFormatTest, OnlyWholeExceptionsCount) {
  SeriesBytes series;
  series.exceptions = {{1, 1, 1, 1, 1}, {2, 2, 2, 2, 2}};
  const std::string whole = series.Build50();
  const struct {
    std::int64_t count;
    std::size_t length, exceptions;
    std::string damage, subject;
  } cases[] = {
      {2, whole.size(), 2, "", "subject"},
      {3, whole.size(), 3, "0x7F behind the subject @120", ""},  // the texts are a third one
      {4, whole.size(), 3, "as many exceptions as are counted @114", ""},
      {0x7FFFFFFF, whole.size(), 3, "as many exceptions as are counted @114", ""},
      {2, 93, 1, "as many exceptions as are counted @74", ""},
      {-1, 54, 0, "a record of 68 bytes or more @54", ""},
      {-1, whole.size(), 0, "a count of exceptions that isn't negative @50", "-"},
  };
  for (const auto& each : cases) {
    std::string bytes = whole.substr(0, each.length);
    bytes.replace(50, 4, Word(each.count, 4));
    const DecodedRecord decoded = DecodeRecord(FormatVersion::k50, bytes);
    EXPECT_EQ(decoded.record.exceptions.size(), each.exceptions) << each.count;
    EXPECT_EQ(DamageOf(decoded), each.damage);
    if (each.subject == "-") continue;
    EXPECT_EQ(decoded.record.detail.subject, each.subject);
  }
}

TEST(RecurringFormatTest, VersionAndMagic) {
  const struct {
    std::string magic;
    FormatVersion version;
    std::size_t damages;
  } cases[] = {
      {"WMWREC50", FormatVersion::k50, 0}, {"XQXREC30", FormatVersion::k30, 0},
      {"WMWREC5", FormatVersion::k30, 1},  {"WMWREC50X", FormatVersion::k30, 1},
      {"wmwrec50", FormatVersion::k30, 1}, {"", FormatVersion::k30, 1},
  };
  for (const auto& each : cases) {
    RecurringFileBytes file;
    file.magic = each.magic;
    file.behindMagic.resize(26 - each.magic.size());
    const Frame frame = recurring::ReadFrame(file.Build());
    EXPECT_TRUE(frame.hasHeader);
    EXPECT_EQ(frame.version, each.version) << each.magic;
    EXPECT_EQ(frame.damages.size(), each.damages) << each.magic;
  }
}

TEST(RecurringFormatTest, AFrameEndsWhereItCanNotBeRead) {
  RecurringFileBytes file;
  file.records = {"first", "second", "third"};
  const std::string whole = file.Build();
  const struct {
    const char* what;
    std::size_t at;
    std::string bytes;
    std::size_t records;
    bool hasAll;
    std::string damage;
  } cases[] = {
      {"whole", 0, "", 3, true, ""},
      {"another tag", 36, "x", 2, true, "an index entry with the tag 0x32C9 @36"},
      {"too long", 38, "\x0D", 1, false, "a record within the file @57"},
      {"to the end of the file", 38, "\x0B", 3, true, ""},
      {"behind the end", 40, "\xFF", 1, false, "a record within the file @255"},
      {"far behind", 43, "\xFF", 1, false, "a record within the file @4278190137"},
      {"nothing, far behind", 38, std::string("\0\0\0\0\0\xFF", 6), 3, true, ""},
      {"over the header", 40, std::string("\0", 1), 3, true, ""},
      {"none counted", 26, std::string("\0\0", 2), 0, true, ""},
      {"negative", 26, "\xFF\xFF", 0, true, "a count of records that isn't negative @26"},
      {"more than there are", 26, "\x06", 0, true, "an index entry for each record @68"},
  };
  for (const auto& each : cases) {
    std::string damaged = whole;
    damaged.replace(each.at, each.bytes.size(), each.bytes);
    const Frame frame = recurring::ReadFrame(damaged);
    EXPECT_EQ(frame.records.size(), each.records) << each.what;
    EXPECT_EQ(frame.hasAllRecords, each.hasAll) << each.what;
    EXPECT_EQ(frame.damages.empty() ? "" : TextOf(frame.damages[0]), each.damage) << each.what;
  }
}

// One record for all entries: their bytes are read no more often than the file is long.
TEST(RecurringFormatTest, RecordsThatOverlapEndTheFile) {
  RecurringFileBytes file;
  file.records.resize(1000);
  std::string bytes = file.Build() + std::string(500, 'r');
  for (std::size_t i = 0; i < 1000; ++i) {
    bytes.replace(28 + 8 * i + 2, 6, Word(500, 2) + Word(8028, 4));
  }
  const Frame frame = recurring::ReadFrame(bytes);
  EXPECT_FALSE(frame.hasAllRecords);
  EXPECT_EQ(frame.records.size(), 17U);
  EXPECT_EQ(TextOf(frame.damages.back()), "a record that overlaps no other @8028");
}

TEST(RecurringFormatTest, ARecordThatIsTooLongIsZerosAndTheNextOnesAreSound) {
  const struct {
    FormatVersion version;
    const char* magic;
    std::size_t fixed;
  } cases[] = {{FormatVersion::k50, "WMWREC50", 68}, {FormatVersion::k30, "XQXREC30", 32}};
  for (const auto& each : cases) {
    Record first, wrapping, last;
    first.detail.subject = "first";
    wrapping.detail.notes = std::string(65536 - each.fixed + 10, 'n');
    last.detail.subject = "last";
    Record longest;
    longest.detail.notes = std::string(65535 - each.fixed, 'n');
    const std::vector<const Record*> records = {&first, &wrapping, &last, &longest};
    const std::string file = RecurringFileBytes{.magic = each.magic, .count = 4}.Build() +
                             recurring::EncodeBody(each.version, records);
    const Frame frame = recurring::ReadFrame(file);
    ASSERT_EQ(frame.records.size(), 4U);
    EXPECT_TRUE(frame.damages.empty());
    EXPECT_EQ(frame.records[1].bytes, std::string(10, '\0'));
    EXPECT_EQ(frame.records[2].bytes, Encode(each.version, last));
    EXPECT_EQ(frame.records[3].bytes.size(), 65535U);
    EXPECT_EQ(file.size(), 28U + 4 * 8 + (each.fixed + 5) + 10 + (each.fixed + 4) + 65535);
  }
}

}  // namespace
