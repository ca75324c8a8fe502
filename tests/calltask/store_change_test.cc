#include "tests/calltask/store_fixture.h"
#include "tests/support/other_files.h"

namespace pw::test {
namespace {

TEST_F(CallTaskStoreTest, RecordsAreFiledUnder1990To2005) {
  const struct {
    std::int32_t year, month, day;
    std::string call, task;
  } cases[] = {
      {1990, 1, 1, "1990-1-1", "1990-1-1"},       {1990, 1, 2, "1990-1-2", "1990-1-2"},
      {1996, 12, 31, "1996-12-31", "1996-12-31"}, {2000, 2, 29, "2000-2-29", "2000-2-29"},
      {2005, 12, 31, "2005-12-31", "2005-12-31"}, {2006, 1, 1, "1990-1-1", "2005-1-1"},
      {2010, 5, 17, "1990-1-1", "2005-5-17"},     {2012, 2, 29, "1990-1-1", "2005-3-1"},
      {1989, 12, 31, "1990-1-1", "1990-12-31"},
  };
  for (const auto& each : cases) {
    WMCallStore::CreateCallStore(kPrefix);
    WMTaskStore::CreateTaskStore(kPrefix);
    WMCallStore calls;
    WMTaskStore tasks;
    ASSERT_EQ(calls.Add(NewCall("c", each.year, each.month, each.day)), 0);
    ASSERT_EQ(tasks.Add(NewTask("t", each.year, each.month, each.day), false), 0);
    EXPECT_EQ(CheckFrame(Saved(kCalls30, calls)), 1);
    EXPECT_EQ(CheckFrame(Saved(kTasks30, tasks)), 1);
    WMCallStore callsAgain;
    WMTaskStore tasksAgain;
    callsAgain.Load(kPrefix);
    tasksAgain.Load(kPrefix);
    EXPECT_EQ(StartOf(callsAgain.Record(0)), each.call);
    EXPECT_EQ(StartOf(tasksAgain.Record(0)), each.task);
  }
}

TEST_F(CallTaskStoreTest, ATaskMayKeepItsDayAndOneWithoutAStartDateHasNone) {
  WMTaskStore::CreateTaskStore(kPrefix);
  WMTaskStore tasks;
  auto kept = NewTask("kept", 1999, 9, 9);
  kept->key = 366;
  auto unfiled = NewTask("never filed", 1999, 9, 9);
  ASSERT_EQ(tasks.Add(std::move(kept), true), 0);
  ASSERT_EQ(tasks.Add(std::move(unfiled), true), 0);
  ASSERT_EQ(tasks.Add(std::make_unique<CTaskRecord>(), false), 0);
  const std::string bytes = Saved(kTasks30, tasks);
  std::vector<std::uint16_t> keys;
  const auto written = pw::calltask::ReadFrame(bytes).days;
  keys.reserve(written.size());
  for (const auto& day : written) keys.push_back(day.key);
  EXPECT_EQ(written[0].bytes.substr(0, 14), pw::test::Task30("", "")) << "a new one's words";
  EXPECT_EQ(keys, (std::vector<std::uint16_t>{0, 366, 9 * 366 + 251}));
}

TEST_F(CallTaskStoreTest, The97thOfADayIsRefused) {
  WMCallStore::CreateCallStore(kPrefix);
  WMCallStore calls;
  for (int i = 0; i < 96; ++i) ASSERT_EQ(calls.Add(NewCall(std::to_string(i), 1999, 5, 5)), 0);
  EXPECT_EQ(calls.Add(NewCall("one more", 1999, 5, 5)), 1511);
  EXPECT_EQ(calls.Count(), 96U);
  EXPECT_EQ(calls.Add(NewCall("next day", 1999, 5, 6)), 0);
  calls.Remove(3);
  EXPECT_EQ(calls.Add(NewCall("in its place", 1999, 5, 5)), 0);
  EXPECT_EQ(CheckFrame(Saved(kCalls30, calls)), 2);
}

// The catch-all is never full: its records make room for the 97th, and live on until the close.
TEST_F(CallTaskStoreTest, AFullCatchAllStartsAfresh) {
  WMCallStore::CreateCallStore(kPrefix);
  auto calls = std::make_unique<WMCallStore>();
  for (int i = 0; i < 97; ++i) {
    ASSERT_EQ(calls->Add(NewCall("call " + std::to_string(i), 2007, 5, 1 + i % 30)), 0);
  }
  EXPECT_EQ(calls->Count(), 97U);
  EXPECT_EQ(calls->Record(0).subject, "call 0");
  EXPECT_EQ(calls->Find("call 95WMCall"), 95U);
  calls->Remove(5);
  calls->Change(5, [](pw::DayRecord& record) { record.SetTexts("changed", ""); });
  EXPECT_EQ(calls->Find("changedWMCall"), 5U);
  EXPECT_EQ(calls->Count(), 96U);
  CallTaskBytes left = {
      "WMWCALL20", std::string(16, '\0'), {{1990, 0, {pw::test::Call30("call 96", "")}}}};
  EXPECT_EQ(Saved(kCalls30, *calls), left.Build());
}

TEST_F(CallTaskStoreTest, ARecurringRecordComesBackWithTheFile) {
  for (const FileKind& kind : kFileKinds) {
    const auto recurring = kind.Record(1, "recurring", "note", kNewWord | 1U << 24);
    const auto other = kind.Record(2, "other", "note");
    CallTaskBytes file = kind.File();
    file.days = {{1991, 5, {other, recurring}}};
    const auto store = Load(kind, file.Build());
    store->Remove(1);
    EXPECT_EQ(Subjects(*store), std::vector<std::string>{"other"});
    EXPECT_EQ(Saved(kind, *store), file.Build());
    store->Remove(0);
    EXPECT_EQ(store->Count(), 0U);
    file.days[0].records = {recurring};
    EXPECT_EQ(Saved(kind, *store), file.Build());
  }
}

TEST_F(CallTaskStoreTest, EveryRecordMadeTakesAnIdOfTheOneCount) {
  platform.clock.ticks = 0xABCD1234;
  platform.clock.now = 900000000;
  EXPECT_EQ(WMCallRec().IdText(FormatVersion::k50), "4660+900000000");
  EXPECT_EQ(CTaskRecord().IdText(FormatVersion::k50), "70196+900000000");
  CallTaskBytes file = kTasks50.File();
  file.days = {{1991, 5, {kTasks50.Record(1, "a", ""), kTasks50.Record(2, "b", "")}}};
  const auto store = Load(kTasks50, file.Build());
  EXPECT_EQ(store->IdText(1), "2+-3");
  EXPECT_EQ(WMCallRec().IdText(FormatVersion::k50), "266804+900000000");
  for (int i = 5; i < 0xFFFF; ++i) WMCallRec();
  EXPECT_EQ(WMCallRec().IdText(FormatVersion::k50), "-60876+900000000");
  EXPECT_EQ(WMCallRec().idWord1, 0x1234U) << "the count has 16 bits";

  file = kTasks30.File();
  file.days = {{1991, 5, {kTasks30.Record(1, "a", "")}}};
  EXPECT_EQ(Load(kTasks30, file.Build())->Record(0).lastChange, 900000000);
}

TEST_F(CallTaskStoreTest, TheFirstOfAnIdIsFoundAsRecordsChange) {
  CallTaskBytes file = kCalls30.File();
  const auto call = [](const std::string& subject) { return pw::test::Call30(subject, "note"); };
  file.days = {{1991, 5, {call("a"), call("b"), call("a")}}, {1993, 5, {call("b"), call("a")}}};
  const auto store = Load(kCalls30, file.Build());
  const auto rename = [&](std::uint32_t index, const char* subject) {
    store->Change(index, [&](pw::DayRecord& record) { record.SetTexts(subject, ""); });
  };
  EXPECT_EQ(store->Find("aWMCall"), 0U);
  EXPECT_EQ(store->Find("bWMCall"), 1U);
  EXPECT_EQ(store->Find("cWMCall"), std::nullopt);
  EXPECT_EQ(store->Find("a"), std::nullopt);
  rename(0, "c");
  EXPECT_EQ(store->Find("aWMCall"), 2U);
  rename(3, "c");
  EXPECT_EQ(store->Find("cWMCall"), 0U);
  store->Remove(0);
  EXPECT_EQ(store->Find("cWMCall"), 2U);
  EXPECT_EQ(store->Find("aWMCall"), 1U);
  static_cast<WMCallStore&>(*store).Add(NewCall("new", 1991, 1, 6));
  EXPECT_EQ(store->Find("newWMCall"), 4U);
  rename(1, "new");
  EXPECT_EQ(store->Find("newWMCall"), 1U);

  // Another file of another version sets the format of all, and the ids with it.
  Load(kCalls50, kCalls50.File().Build());
  EXPECT_EQ(store->Find("newWMCall"), std::nullopt);
  EXPECT_EQ(store->Find(store->IdText(2)), 2U);
}

TEST_F(CallTaskStoreTest, AStartIsTheLocalMidnightOfNewYearAndWholeDays) {
  CallTaskBytes file = kCalls50.File();
  file.days = {{1999, 0, {kCalls50.Record(1, "january", "")}},
               {1999, 181, {kCalls50.Record(2, "july", "")}}};
  const struct {
    const char* city;
    std::string january, july;
    std::int32_t fromUtc;
  } cases[] = {
      {"New York, NY", "1999-1-1", "1999-7-1", 5},
      {"Calcutta", "1999-1-1", "1999-7-1", 0},
      // An hour less than midnight, in winter.
      {"Sydney", "1999-1-1", "1999-6-30", -11},
  };
  for (const auto& each : cases) {
    pw::ResetProcessWideState();
    pw::test::PutZoneFiles(platform, pw::test::SomeCities(), each.city);
    const auto store = Load(kCalls50, file.Build());
    EXPECT_EQ(StartOf(store->Record(0)), each.january) << each.city;
    EXPECT_EQ(StartOf(store->Record(1)), each.july) << each.city;
    EXPECT_EQ(store->Record(1).start - store->Record(0).start, 181 * kSecondsPerDay);
    if (each.fromUtc == 0) continue;
    EXPECT_EQ(store->Record(0).start, PlainSeconds(1999, 1, 1, each.fromUtc, 0, 0)) << each.city;
    EXPECT_EQ(Saved(kCalls50, *store), file.Build()) << "the day of the file stays";
  }
}

TEST_F(CallTaskStoreTest, OnlyTheTaskFileIsMadeAtASave) {
  for (const FileKind& kind : kFileKinds) {
    const auto store = Load(kind, kind.Sample().Build());
    platform.files.Delete(kind.Path());
    store->Save(kPrefix);
    const auto saved = platform.files.Get(kind.Path());
    EXPECT_EQ(saved.has_value(), !kind.isCall);
    EXPECT_EQ(saved.value_or(kind.Sample().Build()), kind.Sample().Build());
  }
}

TEST_F(CallTaskStoreTest, AFileThatCannotBeOpenedStays) {
  for (const FileKind& kind : kFileKinds) {
    const auto store = Load(kind, kind.Sample().Build());
    store->Remove(0);
    platform.files.FailOpen(kind.Path());
    EXPECT_EQ(Saved(kind, *store), kind.Sample().Build());
    EXPECT_EQ(kind.NewStore()->Load(kPrefix), -1);
    platform.files.StopFailing();
    platform.files.FailTruncate();
    EXPECT_EQ(Saved(kind, *store), kind.Sample().Build());
    platform.files.StopFailing();
  }
  platform.files.FailOpen(kCalls30.Path());
  EXPECT_EQ(WMCallStore::CreateCallStore(kPrefix), -1);
  platform.files.StopFailing();
  platform.files.FailWritesAfter(100);
  EXPECT_EQ(WMTaskStore::CreateTaskStore(kPrefix), -1);
}

TEST_F(CallTaskStoreTest, AFileThatCannotBeReadIsNotTakenForAnEmptyOne) {
  for (const FileKind& kind : kFileKinds) {
    EXPECT_EQ(kind.NewStore()->Load(kPrefix), -1) << "there is none";
    EXPECT_EQ(platform.files.Get(kind.Path()), std::nullopt);
    platform.files.Put(kind.Path(), kind.Sample().Build());
    platform.files.SetReadOnly(kind.Path(), true);
    EXPECT_EQ(kind.NewStore()->Load(kPrefix), -1) << "it couldn't be saved";
    platform.files.SetReadOnly(kind.Path(), false);
    {
      const InPlaceOfFiles<OpenAs<UnreadableFile>> unreadable;
      EXPECT_EQ(kind.NewStore()->Load(kPrefix), -1);
    }
    platform.files.Delete(kind.Path());
  }
}

}  // namespace
}  // namespace pw::test
