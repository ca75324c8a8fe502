#include "calendar/data_file.h"

#include <gtest/gtest.h>

#include "calendar/calendar_state.h"
#include "platform/testing/test_platform.h"
#include "tests/support/data_file_builder.h"

namespace {

namespace datafile = pw::datafile;
using datafile::FormatVersion;
using pw::test::DataFileBytes;
using pw::test::DateFields;
using pw::test::DayKey;
using pw::test::DayText;
using pw::test::kMultiDays;
using pw::test::kSpecialDays;
using pw::test::SpanFields;
using Texts = std::vector<std::string>;

constexpr const char* kPath = "C:\\Cal\\Data.WMW";
constexpr const char* kTemplate = "C:\\Program\\Holidef.dat";
constexpr const char* kMainKey = "SOFTWARE\\Gullwing\\PairWise Desktop\\Version 1\\Main";

std::string Special35(const std::string& text) {
  return DateFields(0, 11, 24) + DayText(text);
}
std::string Multi35(const std::string& text, std::int64_t start = 917000000) {
  return SpanFields(start, 918000000) + DayText(text);
}
std::string Special50(const std::string& text, int id = 7, int stamp = 0) {
  return DayKey(900000000, id, stamp) + Special35(text);
}
std::string Multi50(const std::string& text, int id = 7, std::int64_t start = 917000000) {
  return DayKey(900000001, id, 0) + Multi35(text, start);
}

// Both kinds, in the old form.
DataFileBytes File35(bool offsetsBy71) {
  return {.magic = "XQXDATA35",
          .sections = {{kSpecialDays, {Special35("Christmas"), Special35("Easter")}},
                       {kMultiDays, {Multi35("Journey")}}},
          .offsetsBy71 = offsetsBy71};
}

WMSpecialDay NewSpecialDay(const char* text) {
  WMSpecialDay day;
  day.subject = datafile::MakeSubject(text);
  return day;
}

WMMultiDay NewMultiDay(const char* text) {
  WMMultiDay span;
  span.start = span.end = 917000000;
  span.subject = datafile::MakeSubject(text);
  return span;
}

class DataFileTest : public testing::Test {
 protected:
  DataFileTest() {
    platform.registry.Set(kMainKey, "Data", pw::TextValue("C:\\Program"));
    platform.files.PutFolder("C:\\Cal");
    platform.files.PutFolder("C:\\Program");
    platform.clock.now = kNow;
    platform.clock.ticks = 0x12345678;
    OrganiserVersion() = 50;
  }

  std::unique_ptr<WMDataFile> Load() const {
    auto file = std::make_unique<WMDataFile>();
    file->Load(kPath);
    return file;
  }
  std::unique_ptr<WMDataFile> Load(const std::string& bytes) {
    platform.files.Put(kPath, bytes);
    return Load();
  }

  std::string Saved(WMDataFile& file) {
    EXPECT_TRUE(file.Save(kPath));
    return platform.files.Get(kPath).value();
  }

  static Texts Subjects(const WMDataFile& file) {
    Texts texts;
    for (std::uint32_t i = 0; i < file.Count(); ++i) {
      const WMMultiDay* const span = file.MultiDay(i);
      EXPECT_NE(span == nullptr, file.SpecialDay(i) == nullptr);
      const auto& subject = span != nullptr ? span->subject : file.SpecialDay(i)->subject;
      texts.emplace_back(datafile::SubjectText(subject));
    }
    return texts;
  }

  static constexpr std::int32_t kNow = 1050000000;
  pw::TestPlatform platform;
};

const std::string kEmpty50 = datafile::EncodeEmptyFile(FormatVersion::k50);
const std::string kEmpty35 = datafile::EncodeEmptyFile(FormatVersion::k35);

TEST_F(DataFileTest, ComesBackByteForByte) {
  std::string odd = Special50("odd");
  for (std::size_t i = 0; i < odd.size(); ++i) odd[i] = static_cast<char>(0xFF - i);
  std::string oddSpan = Multi50("odd");
  oddSpan.replace(20, 51, odd, 0, 51);
  const DataFileBytes files[] = {
      {.sections = {{kSpecialDays, {Special50("a"), odd}}, {kMultiDays, {Multi50("b"), oddSpan}}}},
      {.sections = {{kMultiDays, {Multi50("b")}}, {kSpecialDays, {Special50("a")}}}},
      {.sections = {{}, {0x1234}, {kSpecialDays}, {}, {kMultiDays, {Multi50("b")}}}},
      {.sections = {{kSpecialDays, std::vector<std::string>(923, Special50("x"))},
                    {kMultiDays, {Multi50("b")}}}},
      {.magic = "XQXDATA35", .sections = {{kSpecialDays, {Special35("a"), Special35("b")}}}},
      {.magic = "XQXDATA35", .sections = {{kSpecialDays}, {kMultiDays, {Multi35("a")}}}},
  };
  for (const DataFileBytes& each : files) {
    const std::string bytes = each.Build();
    const auto file = Load(bytes);
    EXPECT_EQ(Saved(*file), bytes);
    EXPECT_EQ(Saved(*file), bytes) << "a second time";
  }
}

TEST_F(DataFileTest, OldFormKeepsTheStrideOfTheNewOne) {
  const auto file = Load(File35(false).Build());
  EXPECT_EQ(Subjects(*file), Texts({"Journey", "Christmas", "Easter"}));
  EXPECT_EQ(Saved(*file), File35(true).Build());
  EXPECT_EQ(datafile::DecodeFile(*platform.files.Get(kPath)).damage.front().offset, 26U + 10 + 6);
}

TEST_F(DataFileTest, WhatASaveWritesAnew) {
  DataFileBytes file = {.sections = {{kSpecialDays, {Special50("a")}},
                                     {kSpecialDays, {Special50("again")}},
                                     {kMultiDays, {Multi50("b")}, "stray"}}};
  std::string before = file.Build();
  before[9] = 'X';
  file.sections[2].stray.clear();
  const std::string whole = file.Build();
  const auto loaded = Load(before);
  EXPECT_EQ(Subjects(*loaded), Texts({"b", "a"}));
  EXPECT_EQ(Saved(*loaded), whole.substr(0, 126 + 71) + whole.substr(126 + 2 * 71))
      << "the second section of a kind leaves its entry";
}

TEST_F(DataFileTest, SpansOutOfRangeVanish) {
  const auto file = Load(DataFileBytes{
      .sections = {{kMultiDays,
                    {Multi50("early", 1, 299999999), Multi50("first", 2, 300000000),
                     Multi50("last", 3, 2000000000), Multi50("late", 4, 2000000001)}}}}
                             .Build());
  EXPECT_EQ(Subjects(*file), Texts({"first", "last"}));
  EXPECT_EQ(datafile::DecodeFile(Saved(*file)).records.size(), 2U);
}

TEST_F(DataFileTest, OldRecordsTakeKeys) {
  DataFileBytes old = File35(false);
  old.sections[1].records = {Multi35("early", 5), Multi35("Journey")};
  const auto file = Load(old.Build());
  EXPECT_EQ(file->IdText(0), "MultiDay:Journey+917000000");
  ASSERT_EQ(file->Find("SpecialDay:Easter+403374081+1"), 2U);
  platform.files.SetLastWrite(kPath, 3'000'000'000'999'999'999);
  EXPECT_EQ(Load()->Stamp(1), static_cast<std::int32_t>(3000000000)) << "of any year";

  file->SetFileVersion(FormatVersion::k50);
  EXPECT_EQ(file->Find("SpecialDay:Easter+403374081+1"), std::nullopt);
  // In the order of the file; the span that was dropped has the third number.
  EXPECT_EQ(file->IdText(1), "SpecialDay:1050000000+22136");
  EXPECT_EQ(file->IdText(2), "SpecialDay:1050000000+87672");
  EXPECT_EQ(file->IdText(0), "MultiDay:1050000000+218744");
  EXPECT_EQ(file->Find("MultiDay:1050000000+218744"), 0U);
  EXPECT_EQ(file->Stamp(0), kNow);
  const DataFileBytes expected = {
      .sections = {{kSpecialDays,
                    {DayKey(kNow, 0x5678, kNow) + Special35("Christmas"),
                     DayKey(kNow, 0x15678, kNow) + Special35("Easter")}},
                   {kMultiDays, {DayKey(kNow, 0x35678, kNow) + Multi35("Journey")}}}};
  EXPECT_EQ(Saved(*file), expected.Build());
}

TEST_F(DataFileTest, MissingFileIsMade) {
  Load();
  EXPECT_EQ(platform.files.Get(kPath), kEmpty50);
  platform.files.Delete(kPath);
  OrganiserVersion() = 40;
  Load();
  EXPECT_EQ(platform.files.Get(kPath), kEmpty35);

  platform.files.Delete(kPath);
  const std::string holidays =
      DataFileBytes{.sections = {{kSpecialDays, {Special50("Easter")}}}}.Build();
  platform.files.Put(kTemplate, holidays);
  EXPECT_EQ(Subjects(*Load()), Texts({"Easter"}));
  EXPECT_EQ(platform.files.Get(kPath), holidays);

  platform.files.Delete(kPath);
  platform.files.FailOpen(kTemplate);
  EXPECT_EQ(Load()->Count(), 0U);
  EXPECT_EQ(platform.files.Get(kPath), kEmpty35);
}

TEST_F(DataFileTest, NothingIsTakenFromAFileThatIsNone) {
  const std::string good = DataFileBytes{.sections = {{kSpecialDays, {Special50("a")}}}}.Build();
  platform.files.Put(kPath, good);
  platform.files.FailOpen(kPath);
  const auto unopened = Load();
  EXPECT_EQ(unopened->Count(), 0U);
  unopened->AddSpecialDay(NewSpecialDay("new"));
  EXPECT_FALSE(unopened->Save(kPath));
  EXPECT_FALSE(WMDataFile::CreateEmpty(kPath));
  platform.files.StopFailing();
  EXPECT_EQ(platform.files.Get(kPath), good);

  // The version that is held is the registry's, which asks for none here.
  std::string other = good;
  other[0] = 'V';
  const auto file = Load(other);
  EXPECT_EQ(file->Count(), 0U);
  EXPECT_EQ(platform.files.Get(kPath), other) << "loading leaves it";
  file->AddSpecialDay(NewSpecialDay("new"));
  DataFileBytes expected = {.magic = "XQXDATA35"};
  expected.sections = {{kSpecialDays, {std::string("\1") + std::string(9, '\0') + DayText("new")}}};
  EXPECT_EQ(Saved(*file), expected.Build());
}

TEST_F(DataFileTest, AFileOfOnesOwn) {
  platform.registry.Set(kMainKey, "Version", pw::NumberValue(50));
  WMDataFile file;
  file.AddMultiDay(NewMultiDay("span"));
  DataFileBytes expected = {.sections = {{kSpecialDays}, {kMultiDays}}};
  expected.behindMagic = std::string(16, '\0');
  expected.sections[1].records = {DayKey(0, 0, 0) + SpanFields(917000000, 917000000) +
                                  DayText("span")};
  EXPECT_EQ(Saved(file), expected.Build());
  EXPECT_FALSE(file.Remove(1));
  EXPECT_TRUE(file.Remove(0));
  OrganiserVersion() = 40;
  EXPECT_EQ(Saved(file), kEmpty35) << "the version of the calendar's files, not the one held";
}

// Which entry of the table a first record takes.
TEST_F(DataFileTest, SectionsOfNewRecords) {
  std::vector<pw::test::DataSectionBytes> full(10, {0x1234});
  const struct {
    const char* what;
    std::vector<pw::test::DataSectionBytes> sections;
    Texts saved;  // of one new record of each kind behind what is there
  } cases[] = {
      {"both there",
       {{kMultiDays, {Multi50("b")}}, {kSpecialDays, {Special50("a")}}},
       {"b", "span", "a", "day"}},
      {"free entries", {}, {"day", "span"}},
      {"a kind that counts nothing gives way", {{0x1234}, {}}, {"day", "span"}},
      {"so do spans", {{kMultiDays}}, {"day", "span"}},
      {"special days before them", {{}, {kSpecialDays}}, {"span", "day"}},
      {"no free entry for spans", full, {"day"}},
  };
  for (const auto& c : cases) {
    const auto file = Load(DataFileBytes{.sections = c.sections}.Build());
    file->AddSpecialDay(NewSpecialDay("day"));
    file->AddMultiDay(NewMultiDay("span"));
    Texts saved;
    for (const auto& record : datafile::DecodeFile(Saved(*file)).records) {
      std::visit([&](const auto& day) { saved.emplace_back(datafile::SubjectText(day.subject)); },
                 record);
    }
    EXPECT_EQ(saved, c.saved) << c.what;
  }
}

// An entry counts what is added at once, and what is removed only with a save that opens the file.
TEST_F(DataFileTest, AnEntryIsKeptForWhatItCounts) {
  const std::string span = DayKey(0, 0, 0) + SpanFields(917000000, 917000000) + DayText("span");
  const std::string day = DayKey(0, 0, 0) + '\1' + std::string(9, '\0') + DayText("day");
  const auto added = Load(DataFileBytes{.sections = {{kMultiDays}}}.Build());
  added->AddMultiDay(NewMultiDay("span"));
  added->AddSpecialDay(NewSpecialDay("day"));
  const DataFileBytes both = {.sections = {{kMultiDays, {span}}, {kSpecialDays, {day}}}};
  EXPECT_EQ(Saved(*added), both.Build());

  const auto removed = Load(DataFileBytes{.sections = {{kMultiDays, {span}}}}.Build());
  EXPECT_TRUE(removed->Remove(0));
  removed->AddSpecialDay(NewSpecialDay("day"));
  EXPECT_EQ(Saved(*removed),
            (DataFileBytes{.sections = {{kMultiDays}, {kSpecialDays, {day}}}}.Build()));

  std::vector<pw::test::DataSectionBytes> full(10, {0x1234, {"?"}});
  full[0] = {kMultiDays, {span}};
  const auto unsaved = Load(DataFileBytes{.sections = full}.Build());
  unsaved->AddSpecialDay(NewSpecialDay("day"));
  EXPECT_TRUE(unsaved->Remove(0));
  {
    const auto open = platform.files.Open(kPath, pw::OpenMode::kRead, pw::Sharing::kReadWrite);
    EXPECT_FALSE(unsaved->Save(kPath)) << "the file must be this one's alone";
  }
  unsaved->AddSpecialDay(NewSpecialDay("day"));
  EXPECT_EQ(Saved(*unsaved).size(), 126U) << "no entry for special days";
  unsaved->AddSpecialDay(NewSpecialDay("day"));
  EXPECT_EQ(Saved(*unsaved).size(), 126U + 3 * 71) << "that of the spans";
}

TEST_F(DataFileTest, IndexFollowsEveryChange) {
  DataFileBytes sample = {.sections = {{kSpecialDays}, {kMultiDays}}};
  for (int i = 0; i < 4; ++i) {
    sample.sections[0].records.push_back(Special50("day", i / 2, i));
    sample.sections[1].records.push_back(Multi50("span", i / 2));
  }
  const auto file = Load(sample.Build());
  const auto find = [&](const std::string& id) { return file->Find(id).value_or(99); };
  EXPECT_EQ(find("MultiDay:900000001+1"), 2U) << "the first of two";
  EXPECT_EQ(find("SpecialDay:900000000+0"), 4U);
  EXPECT_EQ(find("SpecialDay:900000001+0"), 99U);
  EXPECT_EQ(find("MULTIDAY:900000001+1"), 99U);
  EXPECT_EQ(file->Stamp(7), 3);

  EXPECT_TRUE(file->Remove(2));
  EXPECT_TRUE(file->Remove(3));
  EXPECT_EQ(find("MultiDay:900000001+1"), 2U) << "the other of them";
  EXPECT_EQ(find("SpecialDay:900000000+0"), 3U);
  WMSpecialDay day = *file->SpecialDay(3);
  day.id = 5;
  EXPECT_FALSE(file->Replace(2, day));
  EXPECT_TRUE(file->Replace(3, day));
  EXPECT_EQ(find("SpecialDay:900000000+0"), 99U);
  EXPECT_EQ(find("SpecialDay:900000000+5"), 3U);
  WMMultiDay span = *file->MultiDay(0);
  span.id = 6;
  file->AddMultiDay(span);
  EXPECT_FALSE(file->Replace(4, span));
  EXPECT_EQ(find("MultiDay:900000001+6"), 3U);
  EXPECT_EQ(find("SpecialDay:900000000+5"), 4U);
  EXPECT_EQ(file->Count(), 7U);
}

}  // namespace
