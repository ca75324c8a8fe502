#include "calendar/calendar_store.h"

#include "tests/calendar/calendar_fixture.h"
#include "tests/support/data_file_builder.h"
#include "tests/support/recurring_file_builder.h"

namespace pw::test {
namespace {

constexpr std::int32_t kMay5 = 925862400;  // 1999, 0:00

TEST_F(CalendarTest, AnEmptyFolderIsAnEmptyCalendarThatASaveFills) {
  WMCalendarStore store;
  ASSERT_EQ(store.Load(kCalendar), 0);
  EXPECT_EQ(store.RecordCount(), 0U);
  EXPECT_EQ(Saved(kEventPath), "none");
  EXPECT_EQ(Saved(kDataPath), "none") << "nothing else is looked at";
  EXPECT_NE(Saved("C:\\Data\\Place List.dat"), "none");
  store.plainItems.Append(NewItem("tea", kMay5));
  store.dirty = true;
  EXPECT_EQ(store.Save(), 0);
  EXPECT_FALSE(store.dirty);
  EXPECT_EQ(Saved(kEventPath).substr(0, 10), std::string("WMWCALE50\0", 10));
  EXPECT_EQ(Saved(kDataPath).size(), 126U);
  EXPECT_EQ(Saved(kRecurringPath).substr(0, 9), std::string("WMWREC50\0", 9));
  EXPECT_EQ(Saved(kRecurringPath).size(), 28U);
  WMCalendarStore again;
  ASSERT_EQ(again.Load(kCalendar), 0);
  EXPECT_EQ(again.RecordCount(), 1U);
  EXPECT_EQ(again.plainItems.Item(0).Subject(), "tea");
  EXPECT_EQ(again.Close(), 0);
  EXPECT_EQ(again.plainItems.Count(), 0U);
}

TEST_F(CalendarTest, TheRegistryTellsTheVersionOfNewFiles) {
  EXPECT_EQ(OrganiserVersion(), 0);
  platform.registry.Set("SOFTWARE\\Gullwing\\PairWise Desktop\\Version 1\\Main", "Version",
                        NumberValue(40));
  WMCalendarStore store;
  EXPECT_EQ(OrganiserVersion(), 40);
  ASSERT_EQ(store.Load(kCalendar), 0);
  store.Save();
  EXPECT_EQ(Saved(kEventPath).substr(0, 10), std::string("WMWCALE40\0", 10));
}

TEST_F(CalendarTest, WhatStopsALoad) {
  const std::string whole = Events(50, {}, {});
  ASSERT_EQ(whole.size(), 626U);
  const struct {
    std::string bytes;
    std::int32_t result;
    bool madeOthers;
  } cases[] = {
      {"", -1, false},
      {whole.substr(0, 25), -1, false},
      {whole.substr(0, 26), -1, true},
      {whole.substr(0, 625), -1, true},
      {whole, 0, true},
      {std::string("WMWCALE50X").append(16 + 600, '\0'), 0, true},
  };
  for (const auto& each : cases) {
    platform.files.Delete(kDataPath);
    platform.files.Delete(kRecurringPath);
    platform.files.Put(kEventPath, each.bytes);
    WMCalendarStore store;
    EXPECT_EQ(store.Load(kCalendar), each.result) << each.bytes.size();
    EXPECT_EQ(Saved(kDataPath) != "none", each.madeOthers) << each.bytes.size();
    EXPECT_EQ(Saved(kRecurringPath) != "none", each.madeOthers) << each.bytes.size();
    EXPECT_EQ(Saved(kEventPath), each.bytes);
  }
  platform.files.Put(kEventPath, whole);
  platform.files.FailOpen(kEventPath);
  EXPECT_EQ(WMCalendarStore().Load(kCalendar), 0) << "taken for a missing one";
  platform.files.StopFailing();
  pw::ResetProcessWideState();
  platform.files.Delete("C:\\Data\\cityinfo.dat");
  EXPECT_EQ(WMCalendarStore().Load(kCalendar), -1);
}

TEST_F(CalendarTest, TheEventFileTellsTheVersion) {
  const std::string plain = DayText("a");
  DataFileBytes data{"XQXDATA35", {{kSpecialDays, {DateFields(0, 4, 5) + plain}}}};
  RecurringFileBytes recurring = SomeSeries(false);
  const struct {
    std::string magic;
    std::int32_t version;
    std::string dataMagic;
  } cases[] = {{"WMWCALE50", 50, "WMWDATA50"},
               {"WMWCALE40", 40, "XQXDATA35"},
               {"WMWCALE50X", 40, "XQXDATA35"}};
  for (const auto& each : cases) {
    platform.files.Put(kDataPath, data.Build());
    platform.files.Put(kRecurringPath, recurring.Build());
    const std::string events = each.magic + std::string(626 - each.magic.size(), '\0');
    platform.files.Put(kEventPath, events);
    WMCalendarStore store;
    EXPECT_EQ(OrganiserVersion(), 50) << "as the registry says";
    ASSERT_EQ(store.Load(kCalendar), 0);
    EXPECT_EQ(OrganiserVersion(), each.version);
    EXPECT_EQ(store.RecordCount(), 1 + recurring.records.size());
    EXPECT_EQ(store.dataEnd, 1U);
    EXPECT_EQ(store.eventEnd, 1U);
    store.Save();
    EXPECT_EQ(Saved(kEventPath), events);
    EXPECT_EQ(Saved(kDataPath).substr(0, 9), each.dataMagic);
    EXPECT_EQ(Saved(kRecurringPath), recurring.Build()) << "a series' file keeps its version";
  }
}

TEST_F(CalendarTest, AChangedOccurrenceIsTheInstanceOfItsExceptions) {
  RecurringFileBytes recurring;
  SeriesBytes series;
  series.key = 77;
  series.exceptions = {{77, 5, 0, 888829200, 1}, {77, 6, 1, 888915600, 0}, {77, 5, 0, 1, 1}};
  recurring.records = {series.Build50()};
  platform.files.Put(kRecurringPath, recurring.Build());
  ItemList others;
  for (const std::int32_t id : {5, 6, 9}) {
    auto item = NewItem("changed", kMay5 + id * kSecondsPerHour, 77);
    item->header.id = id;
    item->detail.SetOccurrence(true);
    item->SetChanged(id != 6);
    others.Append(std::move(item));
  }
  platform.files.Put(kEventPath, Events(50, {}, others));
  WMCalendarStore store;
  ASSERT_EQ(store.Load(kCalendar), 0);
  ASSERT_EQ(store.occurrenceItems.Count(), 3U);
  const auto& exceptions = store.recurring.Item(0).exceptions;
  EXPECT_EQ(exceptions[0].instance, &store.occurrenceItems.Item(0));
  EXPECT_EQ(exceptions[1].instance, nullptr) << "not a changed one";
  EXPECT_EQ(exceptions[2].instance, &store.occurrenceItems.Item(0));
  EXPECT_EQ(store.occurrenceItems.WithCreated(77).size(), 3U);
}

// A daily series of a week, of which three days were deleted.
TEST_F(CalendarTest, AnOlderSeriesIsLinkedAtTheLoad) {
  SeriesBytes series;
  series.firstDay = kMay5 + std::int64_t{14} * kSecondsPerHour + 900;  // 9:15 in Lima
  series.lastDay = series.firstDay + std::int64_t{6} * kSecondsPerDay;
  RecurringFileBytes recurring{"XQXREC30"};
  recurring.records = {series.Build30()};
  platform.files.Put(kRecurringPath, recurring.Build());
  ItemList others;
  for (const std::int32_t day : {0, 2, 3, 6}) {
    const auto start = static_cast<std::int32_t>(series.firstDay) + day * kSecondsPerDay;
    auto item = NewItem("subject", start, 1000 + 15 * day);
    item->detail.SetNotes("notes");
    item->SetEnd(start + 45 * kSecondsPerMinute);
    item->detail.SetOccurrence(true);
    others.Append(std::move(item));
  }
  platform.files.Put(kEventPath, Events(40, {}, others));
  WMCalendarStore store;
  ASSERT_EQ(store.Load(kCalendar), 0);
  EXPECT_EQ(store.RecordCount(), 1U) << "occurrences have no numbers";
  EXPECT_EQ(store.recurring.Key(0), 1000);
  EXPECT_EQ(store.recurring.Item(0).Exceptions().size(), 3U);
  EXPECT_EQ(store.recurring.Item(0).Occurrences().size(), 4U);
  EXPECT_EQ(store.zone, HomeZoneId());
  EXPECT_EQ(store.zone, 6);
  store.Save();
  EXPECT_EQ(Saved(kRecurringPath), recurring.Build());
  WMCalendarStore again;
  ASSERT_EQ(again.Load(kCalendar), 0);
  EXPECT_EQ(again.occurrenceItems.WithCreated(1000).size(), 4U);
}

TEST_F(CalendarTest, EachFileIsSavedWhateverBecomesOfTheOthers) {
  WMCalendarStore store;
  ASSERT_EQ(store.Load(kCalendar), 0);
  store.plainItems.Append(NewItem("tea", kMay5));
  store.places.Add("Pier 4");
  EXPECT_EQ(store.Close(), 0);
  EXPECT_EQ(Saved(kEventPath), "none") << "a close saves nothing";
  platform.files.FailOpen(kEventPath);
  EXPECT_EQ(store.Save(), 0);
  EXPECT_EQ(Saved(kDataPath).size(), 126U);
  EXPECT_EQ(Saved(kRecurringPath).size(), 28U);
  EXPECT_NE(Saved("C:\\Data\\Place List.dat").find("Pier 4"), std::string::npos);
}

TEST_F(CalendarTest, FilesAreMadeInTheVersionInForce) {
  OrganiserVersion() = 40;
  EXPECT_TRUE(CreateEventFiles(kCalendar));
  EXPECT_EQ(Saved(kEventPath), "WMWCALE40" + std::string(617, '\0'));
  EXPECT_EQ(Saved(kDataPath).substr(0, 9), "XQXDATA35");
  OrganiserVersion() = 0;
  platform.files.FailOpen(kEventPath);
  platform.files.Delete(kDataPath);
  EXPECT_FALSE(CreateEventFiles(kCalendar));
  EXPECT_EQ(OrganiserVersion(), 50) << "as the registry says";
  EXPECT_EQ(Saved(kDataPath).substr(0, 9), "WMWDATA50") << "it is made all the same";
}

TEST_F(CalendarTest, AResetStopsAtTheFirstStepThatFails) {
  EXPECT_FALSE(ResetFiles(kCalendar)) << "there is no event file to delete";
  EXPECT_EQ(Saved(kDataPath), "none");
  OrganiserVersion() = 50;
  platform.files.Put(kEventPath, "events");
  EXPECT_FALSE(ResetFiles(kCalendar)) << "no recurring file";
  EXPECT_EQ(Saved(kEventPath).size(), 626U);
  EXPECT_EQ(Saved(kDataPath).size(), 126U);
  platform.files.Put(kDataPath, "data");
  platform.files.Put(kRecurringPath, "series");
  platform.files.FailOpen(kDataPath);
  EXPECT_FALSE(ResetFiles(kCalendar)) << "an empty data file can't be made";
  EXPECT_EQ(Saved(kRecurringPath), "series");
  platform.files.StopFailing();
  platform.files.Put(kDataPath, "data");
  EXPECT_TRUE(ResetFiles(kCalendar));
  EXPECT_EQ(Saved(kDataPath).size(), 126U);
  EXPECT_EQ(Saved(kRecurringPath), "none") << "its next load makes it";
}

}  // namespace
}  // namespace pw::test
