#include "calendar/mapping/calendar_source.h"

#include "calendar/calendar_state.h"
#include "plugin/discovery.h"
#include "tests/calendar/mapping_fixture.h"
#include "tests/support/data_file_builder.h"
#include "tests/support/event_file_builder.h"
#include "tests/support/recurring_file_builder.h"
#include "tests/support/source_fixture.h"

namespace pw::test {
namespace {

constexpr std::int32_t kNine = 925999200;  // 6 May 1999, 9:00 in Lima
constexpr std::int32_t kHour = 3600;

// A calendar in Lima on 5 May 1999 at noon in Greenwich.
class CalendarSourceTest : public SourceTest {
 protected:
  CalendarSourceTest() : SourceTest("calendar", 3) {
    platform.files.PutFolder("C:\\Data");
    platform.clock.now = PlainSeconds(1999, 5, 5, 12, 0, 0);
    platform.clock.localOffset = kHour;
    platform.registry.Set("SOFTWARE\\Gullwing\\PairWise Desktop\\Version 1\\Main", "Version",
                          NumberValue(50));
    PutZoneFiles(platform, SomeCities(), "Lima");
    category.Location = kCalendar;
  }

  PWRESULT Add(PWRecord record) { return source->AddRecord(record); }
  PWRESULT Update(PWRecord record) { return source->UpdateRecord(record); }
  std::string Subject() {
    PWRecord record;
    EXPECT_EQ(source->ReadRecord(&record), 0);
    return PWEventRecord(&record).Subject().Str();
  }
  static PWRecord Hour(const std::string& subject, std::int32_t start = kNine) {
    return EventRecord(subject, start, start + kHour);
  }
  static PWRecord TwoDays(const std::string& subject) {
    return DatesRecord(subject, PWDateTimeStamp(1999, 5, 8, 0, 0, 0),
                       PWDateTimeStamp(1999, 5, 9, 0, 0, 0));
  }
  std::string Saved(const char* path) { return platform.files.Get(path).value_or("none"); }
};

TEST_F(CalendarSourceTest, TheEditionChoosesTheKeyOfTheCalendar) {
  const struct {
    std::uint32_t product;
    const char* key;
  } cases[] = {
      {0, "SOFTWARE\\Gullwing\\ORB PairWise Information Manager\\Version 1\\Main"},
      {1, "SOFTWARE\\Gullwing\\Wingmate 98\\Version 1\\Main"},
      {2, "SOFTWARE\\Gullwing\\PairWise Desktop\\Version 1\\Main"},
      {3, "SOFTWARE\\Gullwing\\PairWise Desktop\\Version 1\\Main"},
      {1, "SOFTWARE\\Gullwing\\Wingmate 98\\Version 1\\Main"},
      {0xFFFFFFFF, "SOFTWARE\\Gullwing\\PairWise Desktop\\Version 1\\Main"},
  };
  const auto keyOf = [&](std::uint32_t product) {
    platform.registry.Set("SOFTWARE\\Main", "PRODUCT", NumberValue(product));
    WMSourceManager other(0);
    other.Config = &config;
    other.Log = new TestLog;
    source.reset(other.CreateSource("calendar"));
    source->Category = &category;
    source->Open(0);
    source.reset();
    return CalendarKeyPath();
  };
  for (const auto& each : cases) EXPECT_EQ(keyOf(each.product), each.key);
  CalendarKeyPath() = "as before";
  EXPECT_EQ(keyOf(17), "as before");
}

TEST_F(CalendarSourceTest, TheCursorFollowsWhatIsChanged) {
  ASSERT_EQ(source->Open(0), 0);
  EXPECT_EQ(Add(Hour("a")), 0);
  EXPECT_EQ(Add(Hour("b", kNine + kHour)), 0);
  EXPECT_EQ(Subject(), "b");
  const std::string b = Id();
  EXPECT_EQ(Add(TwoDays("m")), 0);
  EXPECT_EQ(Subject(), "m");
  EXPECT_EQ(source->FirstRecord(), 0);
  EXPECT_EQ(Subject(), "m");
  EXPECT_EQ(source->NextRecord(), 0);
  EXPECT_EQ(Subject(), "a");
  EXPECT_EQ(Update(TwoDays("a")), 0);
  EXPECT_EQ(Id().substr(0, 9), "MultiDay:");
  EXPECT_EQ(Subject(), "a");
  EXPECT_EQ(source->FindRecord(b.c_str()), 0);
  EXPECT_EQ(source->NextRecord(), 1);
  EXPECT_EQ(source->FindRecord("12+34"), 1);
  EXPECT_EQ(Subject(), "m") << "a search that finds nothing leaves the cursor at the start";
  EXPECT_EQ(source->FindRecord(b.c_str()), 0);
  EXPECT_EQ(source->DeleteRecord(), 0);
  EXPECT_EQ(Subject(), "m") << "so does a removal";
  EXPECT_EQ(Ids().size(), 2U);
}

TEST_F(CalendarSourceTest, WhatIsRefusedChangesNothing) {
  ASSERT_EQ(source->Open(0), 0);
  PWRecord record = Hour("early");
  PWEventRecord(&record).StartDate(PWDateTimeStamp(1979, 5, 5, 0, 0, 0));
  EXPECT_EQ(source->AddRecord(record), 1);
  EXPECT_EQ(source->UpdateRecord(record), 1);
  EXPECT_EQ(log->lines.size(), 2U);
  EXPECT_EQ(source->RecordCount(), 0U);
  source->CloseSource();
  EXPECT_EQ(Saved(kEventPath), "none");
}

TEST_F(CalendarSourceTest, WarningsStandInTheLog) {
  ASSERT_EQ(source->Open(0), 0);
  PWRecord record = Hour("50% E");
  PWEventRecord event(&record);
  event.Notes(std::string(2048, 'n').c_str(), PWRecord::kWholeText);
  event.Alarm(true);
  event.AlarmAdvance(1439);
  EXPECT_EQ(source->AddRecord(record), 0);
  EXPECT_EQ(log->lines, Lines{});
  event.Notes(std::string(2049, 'n').c_str(), PWRecord::kWholeText);
  event.AlarmAdvance(1440);
  EXPECT_EQ(source->AddRecord(record), 0);
  EXPECT_EQ(event.AlarmAdvance(), 1439);
  EXPECT_EQ(source->AddRecord(record), 0);
  const Lines shortened = {
      "9 PWDesktop-W2006: The notes for the event '50% E' were shortened and will not appear in "
      "their entirety in Wingmate 99."};
  EXPECT_EQ(log->lines,
            (Lines{"9 PWDesktop-W2015: The event '50% E' has an alarm '1440' minutes is not "
                   "supported on the PWDesktop and the alarm is set to '1439' minutes.",
                   shortened[0], shortened[0]}));
  log->lines.clear();
  EXPECT_EQ(source->AddRecord(record), 1);
  EXPECT_EQ(log->lines.size(), 1U) << "a fourth is refused, and no word is said of its notes";
  // An update that removes its event and finds no room for it is no failure to the engine.
  log->lines.clear();
  EXPECT_EQ(Add(TwoDays("m")), 0);
  ASSERT_EQ(log->lines.size(), 1U) << "one that has no notes isn't told of another's";
  EXPECT_EQ(log->lines[0].substr(0, 17), "9 PWDesktop-W2016");
  log->lines.clear();
  EXPECT_EQ(source->UpdateRecord(record), 0);
  EXPECT_EQ(log->lines.size(), 2U);
  EXPECT_EQ(log->lines[1], shortened[0]);
  EXPECT_EQ(source->RecordCount(), 3U);
}

TEST_F(CalendarSourceTest, ARuleThatTheEngineCannotSayIsSkippedWithAWarning) {
  RecurringFileBytes recurring;
  SeriesBytes series;
  series.key = 77;
  series.kind = 1;
  series.weekMask = 3;
  series.weekdayMask = 2;
  recurring.records = {series.Build50()};
  platform.files.Put(kRecurringPath, recurring.Build());
  platform.files.Put(kEventPath, EventFileBytes().Build());
  ASSERT_EQ(source->Open(0), 0);
  EXPECT_EQ(source->FindRecord("Recurring:77"), 0);
  PWRecord record;
  EXPECT_EQ(source->ReadRecord(&record), 1);
  EXPECT_EQ(log->lines,
            Lines{"9 PWDesktop-W2401: The monthly by day recurring 'subject' contains more than "
                  "one instance and is ignored by PairWise."});
}

// A file of each kind in the version that its number says.
class CalendarRecordsTest : public CalendarSourceTest {
 protected:
  void PutFiles(bool events50, bool data50) {
    RecurringFileBytes recurring;
    SeriesBytes series;
    series.key = -5;
    series.weekMask = 2;
    series.weekdayMask = 4;
    series.reserved3 = 0x8001;
    series.dayMask = 0x80000000;
    series.exceptions = {{1, 2, 1, 888829200 + kSecondsPerDay + 900, 0},
                         {1, 3, 1, 888829200 + 900, 0}};  // 3 and 2 March 1998, 9:15
    recurring.records = {series.Build50()};
    platform.files.Put(kRecurringPath, recurring.Build());
    EventFileBytes events;
    if (!events50) events.magic = "WMWCALE40";
    ItemBytes item;
    item.created = -3;
    item.id = 4;
    events.days = {{1998, 60, Day({{36, Slot({item.Build()})}})}};
    platform.files.Put(kEventPath, events.Build());
    const auto key = [&](std::int64_t created) {
      return data50 ? DayKey(created, 0xFFFFFFFF, 880000000) : std::string();
    };
    // An alarm of so many days, and the spare byte.
    const auto day = [](char alarmDays) {
      return DateFields(99, 3, 6).replace(8, 2, {alarmDays, 1}) + DayText("a:b");
    };
    DataFileBytes data;
    if (!data50) data.magic = "XQXDATA35";
    data.offsetsBy71 = data50;
    data.sections = {{kSpecialDays, {key(10) + day(2), key(11) + day(3)}},
                     {kMultiDays, {key(12) + SpanFields(926000000, 927000000) + DayText("m+1:2")}}};
    platform.files.Put(kDataPath, data.Build());
  }

  std::uint32_t CrcOf(const std::string& id) {
    EXPECT_EQ(source->FindRecord(id.c_str()), 0) << id;
    return source->RecordCRC();
  }

  std::uint32_t Chain(const Lines& texts) {
    std::uint32_t crc = 0;
    for (const std::string& text : texts) crc = source->GenerateCRC(crc, PWString(text.c_str()));
    return crc;
  }

  std::string Stamp() { return Shown(source->RecordTimeStamp()); }
};

TEST_F(CalendarRecordsTest, IdsAndStampsOfVersion50) {
  PutFiles(true, true);
  ASSERT_EQ(source->Open(0), 0);
  EXPECT_EQ(Ids(), (Lines{"MultiDay:12+-1", "SpecialDay:10+-1", "SpecialDay:11+-1", "-3+4",
                          "Recurring:-5"}));
  for (const std::string& id : Ids()) {
    EXPECT_EQ(CrcOf(id), 0U) << id;
    EXPECT_EQ(Id(), id);
    EXPECT_EQ(Stamp(),
              id.find("Day:") == std::string::npos ? "1998-03-15 23:13" : "1997-11-20 05:26")
        << id;
  }
  for (const char* id : {"specialday:10+-1", "SpecialDay:10", "Other:10+-1", "", "-3",
                         "Recurring:", "Recurring:7", "-3+5", ":"}) {
    EXPECT_EQ(source->FindRecord(id), 1) << id;
  }
  EXPECT_EQ(source->FindRecord("-3 and + 4 more"), 0) << "as numbers are read from texts";
}

TEST_F(CalendarRecordsTest, IdsStampsAndCrcsOfOlderFiles) {
  PutFiles(false, false);
  platform.clock.now = PlainSeconds(1999, 5, 5, 12, 0, 0);
  ASSERT_EQ(source->Open(0), 0);
  const std::string day = "SpecialDay:a:b+100885249+1";  // 1, 99, 3, 6; then 1, 0 and zeros
  const std::string span = "MultiDay:m+1:2+926000000";
  const Lines ids = Ids();
  ASSERT_EQ(ids.size(), 5U);
  EXPECT_EQ(ids[0], span);
  EXPECT_EQ(ids[1], day);
  EXPECT_EQ(ids[2], day) << "two of one id";
  EXPECT_EQ(CrcOf(day), Chain({"a:b", "100885249", "1", "258"})) << "the first of them";
  EXPECT_EQ(source->DeleteRecord(), 0);
  EXPECT_EQ(CrcOf(day), Chain({"a:b", "100885249", "1", "259"}));
  EXPECT_EQ(CrcOf(span), Chain({"m+1:2", "926000000", "927000000"}));
  EXPECT_EQ(CrcOf("-3+4"), 0U);
  // Its deleted dates are taken at ten in the morning.
  EXPECT_EQ(CrcOf("Recurring:-5"), Chain({"subject", "notes", "888829200", "888915600", "65540",
                                          "-2147483648", "-2147417086", "888850800", "888937200"}));
  EXPECT_EQ(source->FindRecord(span.c_str()), 0);
  EXPECT_EQ(Stamp(), Shown(UtcStamp(PlainSeconds(1999, 5, 5, 13, 0, 0)))) << "that of the file";
}

TEST_F(CalendarRecordsTest, TheDataFileTellsTheVersionOfItsOwnIds) {
  PutFiles(false, true);
  ASSERT_EQ(source->Open(0), 0);
  EXPECT_EQ(Ids()[0], "MultiDay:12+-1");
  EXPECT_NE(CrcOf("MultiDay:12+-1"), 0U) << "beside older events";
  source->CloseSource();
  PutFiles(true, false);
  MakeSource();
  ASSERT_EQ(source->Open(0), 0);
  EXPECT_EQ(Ids()[0].substr(0, 9), "MultiDay:") << "it is taken over into version 50";
  EXPECT_EQ(Ids()[0].find("m+1"), std::string::npos);
  EXPECT_EQ(CrcOf(Ids()[0]), 0U);
}

}  // namespace
}  // namespace pw::test
