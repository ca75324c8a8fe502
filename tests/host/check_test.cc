#include <gtest/gtest.h>

#include "calendar/event_file.h"
#include "host/check/binder_check.h"
#include "host/check/calendar_check.h"
#include "host/check/card_check.h"
#include "host/check/clock_check.h"
#include "host/check/folder_check.h"
#include "host/check/todo_check.h"
#include "platform/testing/test_platform.h"
#include "tests/platform/temp_folder.h"
#include "tests/support/binder_builder.h"
#include "tests/support/calltask_builder.h"
#include "tests/support/card_file_builder.h"
#include "tests/support/data_file_builder.h"
#include "tests/support/event_file_builder.h"
#include "tests/support/recurring_file_builder.h"

namespace pw {
namespace {

// Each finding as a person reads it.
std::vector<std::string> Texts(const FileCheck& check) {
  std::vector<std::string> texts;
  for (const Finding& finding : check.findings) {
    texts.push_back((finding.offset ? std::to_string(*finding.offset) : "-") + " " + finding.text +
                    " (" + std::to_string(finding.lost) + ")");
  }
  return texts;
}

using Lines = std::vector<std::string>;

TEST(CheckTest, ACardfileIsReadAsTheModuleDoes) {
  const test::CardFileBytes sample = test::ThreeCards();
  const std::string whole = sample.Build();
  EXPECT_EQ(CheckCardfile(whole).holds, "cardfile: 3 cards of 4 fields");
  EXPECT_EQ(Texts(CheckCardfile(whole)), Lines());
  EXPECT_EQ(Texts(CheckCardfile("")), Lines());
  EXPECT_EQ(Texts(CheckCardfile(whole.substr(0, 59))),
            Lines{"59 a header of 60 bytes was expected; the file can't be opened (0)"});
  EXPECT_EQ(Texts(CheckCardfile(whole.substr(0, 1360))),
            Lines{"1360 the file ends before its cards (3)"});
  EXPECT_EQ(Texts(CheckCardfile(whole.substr(0, 1361 + 64))).back(),
            "1425 3 cards were expected (2)");

  // The last body is cut; the second card has none.
  const std::string cut = whole.substr(0, whole.size() - 1);
  ASSERT_EQ(Texts(CheckCardfile(cut)).size(), 1U);
  EXPECT_EQ(CheckCardfile(cut).findings[0].lost, 1U);
  std::string bodiless = whole;
  bodiless.replace(1361 + 64, 4, std::string(4, '\0'));
  EXPECT_EQ(CheckCardfile(bodiless).findings.at(0).offset, 1361U + 64);
  EXPECT_EQ(CheckCardfile(bodiless).findings.at(0).lost, 2U);
  std::string other = whole;
  other[0] = 'X';
  other.replace(60, 4, test::Word(0xFFFFFFFF, 4));
  EXPECT_EQ(CheckCardfile(other).findings.size(), 2U);
}

TEST(CheckTest, ClocksCitiesAndPlaces) {
  EXPECT_EQ(Texts(CheckClocks(std::string(1215, '\0'))),
            Lines{"1215 eight clocks of 152 bytes were expected; none can be read (0)"});
  EXPECT_EQ(Texts(CheckClocks(std::string(1216, '\0'))), Lines());
  EXPECT_EQ(Texts(CheckClocks(std::string(1216, 'x'))), Lines{"- no clock is the home clock (0)"});
  EXPECT_EQ(CheckCities("").findings.size(), 1U);
  EXPECT_EQ(Texts(CheckZoneTable(std::string(35, 'z'))),
            Lines{"35 the file ends within a zone (0)"});
  const std::string places = "WMW400" + test::Word(2, 4) + test::Padded("Pier 4", 64);
  EXPECT_EQ(CheckPlaces(places).holds, "place list: 1 place");
  EXPECT_EQ(Texts(CheckPlaces(places)), Lines{"74 2 places were expected (1)"});
  EXPECT_EQ(Texts(CheckPlaces("WMW401")),
            Lines{"0 \"WMW400\" was expected here; an empty list takes its place (0)"});
}

TEST(CheckTest, MemosByTheFileAndByTheBinder) {
  test::BinderBytes binder = test::TwoSections();
  binder.sections.push_back({"again", 7});
  binder.sections.push_back({"Work", 9});
  binder.sections.push_back({std::string(25, 'n'), 10});
  const std::string sections = binder.Sections();
  EXPECT_EQ(Texts(CheckSectionFile(sections)),
            (Lines{"66 section \"again\" has the id 7, which is another's already (0)",
                   "98 section \"Work\" has the name of another one, and can't be reached (0)",
                   "130 section \"nnnnnnnnnnnnnnnnnnnnnnnnn\" has a name of 25 bytes, of which the "
                   "next save keeps 24 (0)"}));
  binder.notes[1].sectionId = 99;
  std::string headers = binder.Headers();
  FileCheck check;
  CheckBinder({sections, headers, 5}, check);
  const Lines found = Texts(check);
  ASSERT_EQ(found.size(), 4U);
  EXPECT_EQ(found[0],
            "42 note 2 (id 900000005) is of section 99, which the binder hasn't got; a save leaves "
            "out this note and all behind it, and the binder can't be opened any more (2)");
  EXPECT_EQ(found[1].substr(0, 44), "10 note 1 (id 900000000) has its text at 0, ");
  headers.replace(6, 4, test::Word(1, 4));
  EXPECT_EQ(Texts(CheckNoteHeaders(headers)),
            Lines{"42 the end was expected here, behind as many notes as are counted (2)"});
  EXPECT_EQ(Texts(CheckNoteHeaders("")),
            Lines{"0 more notes were expected; the binder can't be opened (0)"});
}

TEST(CheckTest, TasksAndCallsByTheDay) {
  test::CallTaskBytes file{"WMWTASK50"};
  const std::string task = test::Task50(1, 2, "s", "n");
  file.days = {{1998, 40, {task, task}}, {1999, 0, {task}}};
  const std::string whole = file.Build();
  EXPECT_EQ(CheckTasks(whole).holds, "3 tasks of version 50");
  EXPECT_TRUE(CheckTasks(whole).isVersion50);
  EXPECT_EQ(Texts(CheckTasks(whole)), Lines());
  EXPECT_EQ(CheckCalls(whole).findings.at(0).text.substr(0, 26), "\"WMWCALL50\" or \"WMWCALL20\"");

  // The second record of the first day is cut by its block's size.
  std::string cut = whole;
  cut.replace(626 + 40 * 17 + 9, 4, test::Word(2 * task.size() - 1, 4));
  EXPECT_EQ(Texts(CheckTasks(cut)),
            Lines{std::to_string(6848 + task.size()) +
                  " a whole task was expected here; its day is left out (2)"});
  EXPECT_EQ(CheckTasks(cut).holds, "1 task of version 50");
  std::string outside = whole;
  outside.replace(28, 4, test::Word(0xFFFFFF, 4));
  outside.replace(34, 4, test::Word(626, 4));
  outside.replace(626, 4, test::Word(0xFFFFFF, 4)).replace(626 + 9, 4, test::Word(1, 4));
  EXPECT_EQ(Texts(CheckTasks(outside)),
            (Lines{"16777215 the table of a year was expected here (0)",
                   "626 a day that lies within the file was expected here (0)"}));
}

std::string EventFile(const std::vector<std::int32_t>& starts) {
  ItemList plain;
  for (const std::int32_t start : starts) {
    auto item = std::make_unique<WMEventItem>();
    item->header.start = start;
    plain.Append(std::move(item));
  }
  frame::Header header{};
  events::SetMagic(header, 50);
  return *EncodeEvents(header, plain, {});
}

TEST(CheckTest, EventsThatWouldBeLost) {
  TestPlatform platform;
  constexpr std::int32_t kDay = 86400;
  constexpr std::int32_t kNoon = 43200;
  std::string whole = EventFile({kNoon, kNoon, kNoon, kNoon + kDay, kNoon + 400 * kDay});
  EXPECT_EQ(CheckEvents(whole).holds, "5 events and 0 occurrences of version 50");
  EXPECT_EQ(Texts(CheckEvents(whole)), Lines());
  EXPECT_EQ(Texts(CheckEvents(whole.substr(0, 625))),
            Lines{"625 626 bytes were expected at least; the calendar can't be opened (0)"});
  EXPECT_EQ(Texts(CheckEvents(EventFile({kDay - 1}))),
            Lines{"6948 the end of the day was expected here; what is behind it is at 23:59 (1)"});

  // An item of the first day is moved to where three are; then it is before 1970.
  const std::size_t second = test::NumberAt(whole, 626 + 17, 4);
  std::string moved = whole;
  const std::size_t start = whole.find(test::Word(kNoon + kDay, 4), second);
  moved.replace(start, 4, test::Word(kNoon, 4));
  EXPECT_EQ(CheckEvents(moved).findings.at(0).lost, 1U);
  moved.replace(start, 4, test::Word(-1, 4));
  EXPECT_EQ(CheckEvents(moved).findings.at(0).text, "an event before 1970 stands in this day");

  // The last day of a year is damaged: the year behind it isn't read.
  std::string damaged = whole;
  damaged[second] = 'X';
  EXPECT_EQ(Texts(CheckEvents(damaged)),
            (Lines{std::to_string(second) +
                       " a day, 0xFFEFEFFF was expected here; its day is left out (1)",
                   "- the years behind one that ends with a damaged day aren't read (1)"}));
}

TEST(CheckTest, SeriesAndAllDayEntries) {
  const test::RecurringFileBytes series = test::SomeSeries(true);
  EXPECT_EQ(CheckSeries(series.Build()).holds, "4 series of version 50");
  EXPECT_EQ(Texts(CheckSeries(series.Build())), Lines());
  test::RecurringFileBytes doubled = series;
  doubled.records.push_back(series.records[0]);
  ASSERT_EQ(CheckSeries(doubled.Build()).findings.size(), 1U);
  EXPECT_TRUE(CheckSeries(doubled.Build()).findings[0].text.find("key of its own") !=
              std::string::npos);
  test::RecurringFileBytes tagged = series;
  tagged.tags = {0x32C8};
  ASSERT_EQ(CheckSeries(tagged.Build()).findings.size(), 2U);
  EXPECT_EQ(CheckSeries(tagged.Build()).findings[1].lost, 1U);
  // Its notes go on to its end, and with the byte that a save puts there it is too long.
  test::SeriesBytes endless;
  endless.notes = std::string(65535, 'n');
  test::RecurringFileBytes unended{"XQXREC30"};
  unended.records = {endless.Build30().substr(0, 65535)};
  EXPECT_EQ(Texts(CheckSeries(unended.Build())).back(), "36 a series of more than 65535 bytes (1)");

  test::DataFileBytes data;
  data.sections = {
      {test::kMultiDays,
       {test::DayKey(1, 2, 3) + test::SpanFields(300'000'000, 300'000'001) + test::DayText("in"),
        test::DayKey(1, 2, 3) + test::SpanFields(299'999'999, 300'000'001) +
            test::DayText("out")}}};
  const FileCheck found = CheckDataFile(data.Build(), false);
  EXPECT_EQ(found.holds, "0 special days and 2 spans of days, of version 50");
  ASSERT_EQ(found.findings.size(), 1U);
  EXPECT_EQ(found.findings[0].lost, 1U);
  const std::string day = test::DayKey(1, 2, 3) + test::DateFields(0, 1, 2) + test::DayText("d");
  // 924 days leave no place for what is behind them.
  data.sections[0].records.pop_back();
  data.sections.insert(data.sections.begin(),
                       {test::kSpecialDays, std::vector<std::string>(924, day)});
  EXPECT_EQ(
      Texts(CheckDataFile(data.Build(), false)),
      (Lines{"26 923 records at most were expected in this section; what is saved behind more "
             "of them can't be found again (0)",
             "- the sections would stand elsewhere than their table says (1)"}));
  data.sections[0].records.pop_back();
  EXPECT_EQ(Texts(CheckDataFile(data.Build(), false)), Lines());
}

// A text behind the magic makes it that of version 40.
TEST(CheckTest, ADataFileIsTakenOverBesideEventsOfVersion50) {
  const std::string day = test::DateFields(0, 4, 5) + test::DayText("d");
  const std::string span = test::SpanFields(300'000'000, 300'000'001) + test::DayText("s");
  std::string data =
      test::DataFileBytes{"XQXDATA35", {{test::kSpecialDays, {day}}, {test::kMultiDays, {span}}}}
          .Build();
  data.replace(42, 4, test::Word(126 + day.size(), 4));  // which a save as version 35 wouldn't
  for (const auto& [magic, lost] : {std::pair("WMWCALE50", 0U), std::pair("WMWCALE50X", 1U)}) {
    const TempFolder folder;
    frame::Header header{};
    frame::SetMagic(header, magic);
    folder.Put("AdaEven.wmw", frame::WriteEmptyFile(header));
    folder.Put("AdaData.wmw", data);
    const auto check = CheckFolder(folder.Path());
    ASSERT_TRUE(check);
    std::size_t found = 0;
    for (const Finding& finding : check->files[0].check.findings) found += finding.lost;
    EXPECT_EQ(found, lost) << magic;
  }
}

// Its key tells which series an occurrence is of.
TEST(CheckTest, OccurrencesWithoutTheirSeries) {
  test::SeriesBytes series;
  series.key = 77;
  test::RecurringFileBytes recurring;
  recurring.records = {series.Build50()};
  test::ItemBytes mine;
  mine.created = 77;
  mine.flagWord = 0x808080C1;
  test::ItemBytes stray = mine;
  stray.created = 78;
  test::ItemBytes plain = stray;
  plain.flagWord = 0x808080C0;
  test::EventFileBytes events;
  events.days = {
      {1998, 60, test::Day({{36, test::Slot({mine.Build(), stray.Build(), plain.Build()})}})}};
  FileCheck check;
  CheckOccurrences(events.Build(), recurring.Build(), check);
  EXPECT_EQ(Texts(check), Lines{"- 1 occurrence is of a series that isn't there; the organiser "
                                "shows them, and nobody else gets them (0)"});
  FileCheck older;
  recurring.magic = "XQXREC30";
  CheckOccurrences(events.Build(), recurring.Build(), older);
  EXPECT_EQ(Texts(older), Lines()) << "without keys nobody knows";
}

TEST(CheckTest, FilesAreKnownByTheirNames) {
  const TempFolder folder;
  folder.Put("friends.wmcard", test::ThreeCards().Build());
  folder.Put("Clocks.dat", std::string(1216, '\0'));
  folder.Put("letter.txt", "");
  folder.Put("AdaRecr.wmw", test::SomeSeries(true).Build());
  folder.Put("BobData.wmw",
             test::DataFileBytes{
                 "XQXDATA35", {{test::kMultiDays, {test::SpanFields(1, 1) + test::DayText("out")}}}}
                 .Build());
  folder.Put("My clocks.dat", "");
  const auto check = CheckFolder(folder.Path());
  ASSERT_TRUE(check);
  ASSERT_EQ(check->files.size(), 4U);
  EXPECT_EQ(check->files[3].name, "friends.wmcard");
  EXPECT_EQ(check->others, 2U);
  EXPECT_EQ(Texts(check->files[0].check),
            Lines{"- there is no event file beside it, so that it is overwritten (4)"});
  EXPECT_EQ(Texts(check->files[1].check),
            (Lines{"126 a first and a last day from 300000000 to 2000000000 was expected here (0)",
                   "- there is no event file beside it, so that it is overwritten (1)"}));
  EXPECT_FALSE(CheckFolder(folder.Path() / "none"));
}

}  // namespace
}  // namespace pw
