#include "calendar/data_format.h"

#include <gtest/gtest.h>

#include "tests/support/data_file_builder.h"

namespace {

namespace datafile = pw::datafile;
using datafile::FormatVersion;
using pw::test::DataFileBytes;
using pw::test::DayText;
using pw::test::kMultiDays;
using pw::test::kSpecialDays;

const std::string kKey("\x01\x02\x03\x04\x05\x06\x07\x80\x09\x0A\x0B\x8C", 12);
const std::string kDate("\x00\x50\x0B\x00\x05\x06\x01\x80\x0E\xFF", 10);
const std::string kSpan("\x00\xA3\xE1\x11\x00\x94\x35\x77\x07\x09", 10);

WMSpecialDay FourthOfSomething() {
  WMSpecialDay day;
  day.created = 0x04030201;
  day.id = 0x80070605;
  day.stamp = static_cast<std::int32_t>(0x8C0B0A09);
  day.byDate = 0;
  day.year = 80;
  day.month = 11;
  day.week = 5;
  day.weekday = 6;
  day.alarm = 0x8001;
  day.alarmDays = 14;
  day.spare = 0xFF;
  day.subject = datafile::MakeSubject("Fourth");
  return day;
}

WMMultiDay Journey() {
  WMMultiDay span;
  span.created = 0x04030201;
  span.id = 0x80070605;
  span.stamp = static_cast<std::int32_t>(0x8C0B0A09);
  span.start = 300000000;
  span.end = 2000000000;
  span.flag = 7;
  span.kind = 9;
  span.subject = datafile::MakeSubject("Journey");
  return span;
}

template <class Day>
std::string Encoded(const Day& day, FormatVersion version) {
  pw::ByteWriter out;
  datafile::EncodeRecord(out, day, version);
  return out.Release();
}

template <class Day>
Day Decoded(const std::string& bytes, FormatVersion version) {
  pw::ByteReader in(bytes);
  if constexpr (std::is_same_v<Day, WMSpecialDay>) return datafile::DecodeSpecialDay(in, version);
  if constexpr (std::is_same_v<Day, WMMultiDay>) return datafile::DecodeMultiDay(in, version);
}

constexpr FormatVersion k35 = FormatVersion::k35;
constexpr FormatVersion k50 = FormatVersion::k50;

template <class Day>
void ExpectBytes(const Day& day, const std::string& bytes) {
  EXPECT_EQ(Decoded<Day>(kKey + bytes, k50), day);
  EXPECT_EQ(Encoded(day, k50), kKey + bytes);
  EXPECT_EQ(Encoded(day, k35), bytes);
  EXPECT_EQ(Encoded(Decoded<Day>(bytes, k35), k50), std::string(12, '\0') + bytes);
}

// A text as it comes back in the new form, and as the old one takes it over.
template <class Day>
void ExpectText(const std::string& fields, const std::string& stored, const std::string& old) {
  const std::string bytes = kKey + fields + DayText(stored);
  const std::string bytes35 = fields + DayText(old);
  EXPECT_EQ(Encoded(Decoded<Day>(bytes, k50), k50), bytes) << "also behind the zero";
  EXPECT_EQ(Encoded(Decoded<Day>(bytes, k50), k35), bytes35);
  EXPECT_EQ(Encoded(Decoded<Day>(bytes.substr(12), k35), k50).substr(12), bytes35);
}

TEST(DataFormatTest, RecordsByteForByte) {
  ExpectBytes(FourthOfSomething(), kDate + DayText("Fourth"));
  ExpectBytes(Journey(), kSpan + DayText("Journey"));
}

TEST(DataFormatTest, NewRecords) {
  EXPECT_EQ(Encoded(WMSpecialDay(), k50), std::string(12, '\0') + '\1' + std::string(58, '\0'));
  EXPECT_EQ(Encoded(WMMultiDay(), k50), std::string(21, '\0') + '\5' + std::string(49, '\0'));
}

TEST(DataFormatTest, TextsHaveTheirLimits) {
  const auto made = datafile::MakeSubject(std::string(60, 's'));
  EXPECT_EQ(std::string(made.begin(), made.end()), DayText(std::string(47, 's')));
  const std::string full(49, 'f');
  ExpectText<WMSpecialDay>(kDate, full, full);
  ExpectText<WMMultiDay>(kSpan, full, full.substr(1));
  for (const auto& [stored, old] : {std::pair(std::string("ends\0here", 9), std::string("ends")),
                                    std::pair(std::string(48, 'g'), std::string(48, 'g'))}) {
    ExpectText<WMSpecialDay>(kDate, stored, old);
    ExpectText<WMMultiDay>(kSpan, stored, old);
  }
}

TEST(DataFormatTest, IdTexts) {
  WMSpecialDay day = FourthOfSomething();
  WMMultiDay span = Journey();
  EXPECT_EQ(datafile::IdText(day, k50), "SpecialDay:67305985+-2147023355");
  EXPECT_EQ(datafile::IdText(span, k50), "MultiDay:67305985+-2147023355");
  // 0x000B5000, 0x80010605
  EXPECT_EQ(datafile::IdText(day, k35), "SpecialDay:Fourth+741376+-2147416571");
  EXPECT_EQ(datafile::IdText(span, k35), "MultiDay:Journey+300000000");
  day.day = 0xFF;
  day.subject.fill('x');
  EXPECT_EQ(datafile::IdText(day, k35),
            "SpecialDay:" + std::string(48, 'x') + "+-16035840+-2147416571");
}

TEST(DataFormatTest, EmptyFileByteForByte) {
  const std::string table = std::string("\xDB\x32\0\0\0\0\x7E\0\0\0", 10) + std::string(90, '\0');
  const std::string zeros(17, '\0');
  EXPECT_EQ(datafile::EncodeEmptyFile(k50), "WMWDATA50" + zeros + table);
  EXPECT_EQ(datafile::EncodeEmptyFile(k35), "XQXDATA35" + zeros + table);
}

TEST(DataFormatTest, SectionsWrapAt16Bits) {
  const struct {
    std::size_t specialDays;
    int count, bytes;
  } cases[] = {
      {datafile::kMostRecords, 923, 65533}, {datafile::kMostRecords + 1, 924, 68}, {65537, 1, 71}};
  for (const auto& c : cases) {
    datafile::SectionTable table = datafile::NewTable();
    table[1].tag = kMultiDays;
    datafile::PlaceSections(table, c.specialDays, 2);
    EXPECT_EQ(table[0].count, c.count);
    EXPECT_EQ(table[0].bytes, c.bytes);
    EXPECT_EQ(table[1].offset, 126 + c.bytes);
    EXPECT_EQ(table[9].offset, 126 + c.bytes + 142) << "free ones too";
  }
}

// What a checker is told, by what was done to a good file.
TEST(DataFormatTest, DamageIsFoundWhereItIs) {
  DataFileBytes sample;
  sample.sections = {
      {kSpecialDays, {kKey + kDate + DayText("one"), kKey + kDate + DayText("two")}},
      {kMultiDays, {kKey + kSpan + DayText("three")}},
  };
  const std::string whole = sample.Build();
  ASSERT_EQ(whole.size(), 126U + 3 * 71);
  const auto with = [&](std::size_t at, const std::string& bytes) {
    return std::string(whole).replace(at, bytes.size(), bytes);
  };
  const struct {
    const char* what;
    std::string bytes;
    std::size_t records;
    std::string expected;  // begins so; empty where nothing is wrong
    std::size_t offset, lost;
  } cases[] = {
      {"nothing", whole, 3, "", 0, 0},
      {"no zero behind the magic", with(9, "X"), 3, "", 0, 0},
      {"an offset below the first section", with(32, std::string(4, '\0')), 3, "", 0, 0},
      {"a negative one", with(32, "\xFF\xFF\xFF\xFF"), 3, "", 0, 0},
      {"no file", "", 0, "\"WMWDATA50\"", 0, 0},
      {"another magic", with(8, "1"), 0, "\"WMWDATA50\"", 0, 0},
      {"a short table", whole.substr(0, 125), 0, "a header and", 125, 0},
      {"a short section", whole.substr(0, whole.size() - 1), 2, "as many records", 268, 1},
      {"an unknown kind", with(36, "\xDD"), 2, "special days (0x32DB)", 36, 1},
      {"one before a known one", with(26, "\xDD"), 1, "special days (0x32DB)", 26, 2},
      {"a kind twice", with(36, "\xDB"), 2, "one section", 36, 1},
      {"a section elsewhere", with(42, "\x0D").insert(268, "x"), 3, "a section that begins", 42, 0},
      {"too early", with(126 + 142 + 12, "\xFF\xA2"), 3, "a first and a last day", 280, 1},
      {"too late", with(126 + 142 + 16, "\1"), 3, "a first and a last day", 280, 1},
  };
  for (const auto& c : cases) {
    const datafile::File file = datafile::DecodeFile(c.bytes);
    EXPECT_EQ(file.records.size(), c.records) << c.what;
    ASSERT_EQ(file.damage.size(), c.expected.empty() ? 0U : 1U) << c.what;
    if (file.damage.empty()) continue;
    EXPECT_EQ(std::string(file.damage[0].expected).find(c.expected), 0U) << c.what;
    EXPECT_EQ(file.damage[0].offset, c.offset) << c.what;
    EXPECT_EQ(file.damage[0].recordsLost, c.lost) << c.what;
  }
}

TEST(DataFormatTest, RecordsLostAtASave) {
  const auto specials = [](std::size_t count, const std::string& key = kKey) {
    std::vector<std::string> records;
    for (std::size_t i = 0; i < count; ++i) {
      records.push_back(key + kDate + DayText("day " + std::to_string(i)));
    }
    return records;
  };
  const std::string span35 = kSpan + DayText("span");
  const std::string early = kKey + std::string(10, '\0') + DayText("early");
  using Sections = std::vector<pw::test::DataSectionBytes>;
  const pw::test::DataSectionBytes spans = {kMultiDays, {kKey + span35, early}};  // one is taken in
  const pw::test::DataSectionBytes unknown = {0x1234, specials(2)};
  const Sections old = {{kSpecialDays, specials(3, "")}, {kMultiDays, {span35, span35}}};
  const struct {
    const char* what;
    Sections sections;
    FormatVersion version, saved;
    std::size_t lost;
  } cases[] = {
      {"nothing at all", {}, k50, k50, 0},
      {"both kinds", {{kSpecialDays, specials(3)}, spans}, k50, k50, 0},
      {"both in the old form", old, k35, k35, 2},
      {"taken over into the new form", old, k35, k50, 0},
      {"one kind in the old form", {old[0]}, k35, k35, 0},
      {"a full section", {{kSpecialDays, specials(923)}, spans}, k50, k50, 0},
      {"one too many", {{kSpecialDays, specials(924)}, spans}, k50, k50, 1},
      {"no other section behind them", {{kSpecialDays, specials(924)}}, k50, k50, 0},
      {"behind two of an unknown kind", {unknown, {kSpecialDays, specials(3)}}, k50, k50, 2},
      {"before them", {{kSpecialDays, specials(3)}, unknown}, k50, k50, 0},
      {"a key, which the old form has no room for",
       {{kMultiDays, {kKey + span35, std::string(12, '\0') + span35}}},
       k50,
       k35,
       1},
  };
  for (const auto& c : cases) {
    const DataFileBytes file = {.magic = c.version == k50 ? "WMWDATA50" : "XQXDATA35",
                                .sections = c.sections,
                                .offsetsBy71 = false};
    EXPECT_EQ(datafile::LostAtSave(datafile::DecodeFile(file.Build()), c.saved), c.lost) << c.what;
  }

  datafile::File full;
  for (WMDataSection& section : full.table) section.tag = 0x1234;
  full.records = {FourthOfSomething(), Journey()};
  EXPECT_EQ(datafile::LostAtSave(full, k50), 2U) << "no entry is free";
  full.table[9].tag = kMultiDays;
  EXPECT_EQ(datafile::LostAtSave(full, k50), 1U) << "but one";
}

// Ten entries that each claim as much as they can, over the same bytes.
TEST(DataFormatTest, CountsAreHeldToTheFile) {
  DataFileBytes sample;
  sample.sections = {{kSpecialDays, {std::string(71, 'x')}}, {kMultiDays, {std::string(71, 'x')}}};
  std::string bytes = sample.Build();
  for (std::size_t entry = 26; entry < 126; entry += 10) bytes.replace(entry + 2, 2, "\xFF\xFF");
  EXPECT_EQ(datafile::DecodeFile(bytes).records.size(), 2U) << "each byte once";
  bytes.replace(32, 4, "\xFF\xFF\xFF\x7F");
  EXPECT_EQ(datafile::DecodeFile(bytes).records.size(), 1U);
}

}  // namespace
