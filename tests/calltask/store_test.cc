#include <gtest/gtest.h>

#include "base/text.h"
#include "platform/testing/test_platform.h"
#include "tests/support/calltask_files.h"
#include "tests/support/zone_files.h"
#include "timeplace/zones.h"

namespace {

using pw::calltask::FormatVersion;
using pw::test::CallTaskBytes;
using pw::test::CheckFrame;
using pw::test::FileKind;
using pw::test::kFileKinds;
using pw::test::kNewWord;
using pw::test::kPrefix;

constexpr FileKind kCalls30 = {true, false};
constexpr FileKind kCalls50 = {true, true};
constexpr FileKind kTasks30 = {false, false};
constexpr FileKind kTasks50 = {false, true};

class CallTaskStoreTest : public testing::Test {
 protected:
  CallTaskStoreTest() { platform.files.PutFolder("C:\\Data"); }

  std::unique_ptr<pw::DayStore> Load(const FileKind& kind, const std::string& bytes,
                                     std::int32_t result = 0) {
    platform.files.Put(kind.Path(), bytes);
    auto store = kind.NewStore();
    EXPECT_EQ(store->Load(kPrefix), result);
    return store;
  }
  std::string Saved(const FileKind& kind, const pw::DayStore& store) {
    store.Save(kPrefix);
    return *platform.files.Get(kind.Path());
  }
  static std::vector<std::string> Subjects(const pw::DayStore& store) {
    std::vector<std::string> subjects;
    for (std::uint32_t i = 0; i < store.Count(); ++i) subjects.push_back(store.Record(i).subject);
    return subjects;
  }
  static std::unique_ptr<WMCallRec> NewCall(const std::string& subject, std::int32_t year,
                                            std::int32_t month, std::int32_t day) {
    auto call = std::make_unique<WMCallRec>();
    call->SetTexts(subject, "");
    call->SetStart(PlainSeconds(year, month, day, 12, 0, 0));
    return call;
  }
  static std::unique_ptr<CTaskRecord> NewTask(const std::string& subject, std::int32_t year,
                                              std::int32_t month, std::int32_t day) {
    auto task = std::make_unique<CTaskRecord>();
    task->SetTexts(subject, "");
    task->SetStart(PlainSeconds(year, month, day, 12, 0, 0));
    return task;
  }

  // The local date of a record's start.
  static std::string StartOf(const pw::DayRecord& record) {
    const WMBrokenTime local = SecondsToLocal(record.start);
    return pw::Format("%d-%d-%d", local.year + 1900, local.mon + 1, local.mday);
  }

  pw::TestPlatform platform;
};

TEST_F(CallTaskStoreTest, AFileIsSavedByteForByte) {
  for (const FileKind& kind : kFileKinds) {
    const CallTaskBytes sample = kind.Sample();
    const auto store = Load(kind, sample.Build());
    ASSERT_EQ(store->Count(), 102U);
    EXPECT_TRUE(store->IsDirty()) << "a file is rewritten, changed or not";
    EXPECT_EQ(CheckFrame(Saved(kind, *store)), 5);
    EXPECT_EQ(Saved(kind, *store), sample.Build());
  }
}

TEST_F(CallTaskStoreTest, RecordsComeByAscendingDaysWhateverTheOrderInTheFile) {
  for (const FileKind& kind : kFileKinds) {
    CallTaskBytes file = kind.File();
    file.days = {{1991, 5, {kind.Record(1, "a", "note"), kind.Record(2, "b", "note")}},
                 {1992, 9, {kind.Record(3, "c", "note")}}};
    const std::string sorted = file.Build();
    std::string swapped = sorted;
    swapped.replace(26, 12, sorted.substr(32, 6) + sorted.substr(26, 6));
    const auto store = Load(kind, swapped);
    EXPECT_EQ(Subjects(*store), (std::vector<std::string>{"a", "b", "c"}));
    EXPECT_EQ(Saved(kind, *store), sorted);
  }
}

TEST_F(CallTaskStoreTest, OfTwoDaysWithOneKeyTheLaterThatCanBeReadCounts) {
  for (const FileKind& kind : kFileKinds) {
    CallTaskBytes file = kind.File();
    file.days = {{1991, 5, {kind.Record(1, "a", "note")}},
                 {1992, 5, {kind.Record(2, "b", "note")}}};
    std::string bytes = file.Build();
    bytes[26] = 92;
    EXPECT_EQ(Subjects(*Load(kind, bytes)), std::vector<std::string>{"b"});
    const std::size_t secondTable = 626 + 6222 + file.days[0].Block().size();
    bytes.replace(secondTable + 5 * std::size_t{17} + 9, 4, pw::test::Word(5, 4));
    EXPECT_EQ(Subjects(*Load(kind, bytes)), std::vector<std::string>{"a"});
  }
}

// Neither a block's size nor what a table's entries hold beside it is relied upon.
TEST_F(CallTaskStoreTest, OnlyThe96SlotsOfABlockAreRead) {
  for (const FileKind& kind : kFileKinds) {
    CallTaskBytes file = kind.File();
    const auto record = kind.Record(1, "one", "note");
    for (int day = 0; day < 300; ++day) file.days.push_back({1991, day, {record}});
    file.days[7].records = {record, record};
    const std::string whole = file.Build();
    std::string odd = whole;
    const std::size_t seventh = 626 + 7 * 17;
    const std::size_t offset = pw::test::NumberAt(whole, seventh, 4);
    odd.replace(626 + 9, 4, pw::test::Word(whole.size() - 6848, 4));  // to the end of the file
    odd.replace(seventh + 4, 5, "\x01\x02\x03\x04\x05");
    odd.replace(seventh + 13, 4, "\x06\x07\x08\x09");
    // Empty slots before and between its records.
    odd.replace(offset, 2 * record.size() + 2,
                std::string("\x09").append(record) + "\x09" + record);
    const auto store = Load(kind, odd);
    EXPECT_EQ(store->Count(), 301U);
    EXPECT_EQ(Saved(kind, *store), whole);
  }
}

// Seconds don't reach them.
TEST_F(CallTaskStoreTest, YearsBehind2037AreShownAsThatOneAndKept) {
  for (const FileKind& kind : kFileKinds) {
    CallTaskBytes file = kind.File();
    file.days = {{2037, 364, {kind.Record(1, "a", "note")}},
                 {2050, 40, {kind.Record(2, "b", "note")}},
                 {2168, 365, {kind.Record(3, "c", "note")}}};
    const auto store = Load(kind, file.Build());
    ASSERT_EQ(store->Count(), 3U);
    EXPECT_EQ(StartOf(store->Record(0)), "2037-12-31");
    EXPECT_EQ(StartOf(store->Record(1)), "2037-2-10");
    EXPECT_EQ(StartOf(store->Record(2)), "2038-1-1");
    EXPECT_EQ(Saved(kind, *store), file.Build());
  }
}

TEST_F(CallTaskStoreTest, ADayThatCannotBeReadIsLeftOut) {
  for (const FileKind& kind : kFileKinds) {
    CallTaskBytes file = kind.File();
    const auto good = kind.Record(2, "good", "note");
    file.days = {{1991, 5, {kind.Record(1, "bad", "note"), good}}, {1991, 6, {good}}};
    const CallTaskBytes left{file.magic, file.behindMagic, {{1991, 6, {good}}}};
    std::string bytes = file.Build();
    // A block that ends within its second record, in a file that ends there.
    const std::size_t size = file.days[0].records[0].size() + good.size() - 1;
    bytes.replace(626 + 5 * 17 + 9, 4, pw::test::Word(size, 4));
    const auto store = Load(kind, bytes);
    EXPECT_EQ(Subjects(*store), std::vector<std::string>{"good"});
    EXPECT_EQ(Saved(kind, *store), left.Build());
  }
}

// A full day has no filler behind its last record, which must then be long enough by itself.
TEST_F(CallTaskStoreTest, AFullDayMayEndInAShortRecord) {
  const struct {
    FileKind kind;
    std::string last;
    bool isRead;
  } cases[] = {
      {kCalls30, "12345", false}, {kCalls30, "123456", true}, {kCalls50, "", true},
      {kCalls50, "1", true},      {kTasks30, "", true},       {kTasks50, "", true},
  };
  for (const auto& each : cases) {
    CallTaskBytes file = each.kind.File();
    file.days = {{1999, 1, std::vector<std::string>(95, each.kind.Record(1, "s", "note"))}};
    file.days[0].records.push_back(each.kind.Record(2, each.last, ""));
    EXPECT_EQ(Load(each.kind, file.Build())->Count(), each.isRead ? 96U : 0U) << each.last;
  }
}

TEST_F(CallTaskStoreTest, ARecordWithoutASubjectGainsItsSeparatorInTheNote) {
  for (const FileKind& kind : kFileKinds) {
    CallTaskBytes file = kind.File();
    file.days = {{1999, 1, {kind.Record(1, "", "no subject"), kind.Record(2, "~\x10", "\x10")}}};
    const auto store = Load(kind, file.Build());
    ASSERT_EQ(store->Count(), 2U);
    EXPECT_EQ(store->Record(0).subject, "");
    EXPECT_EQ(store->Record(0).note, "\x7Fno subject");
    EXPECT_EQ(store->Record(1).subject, "~~");
    EXPECT_EQ(store->Record(1).note, "~");
    file.days[0].records = {kind.Record(1, "", "\x7Fno subject"), kind.Record(2, "~~", "~")};
    EXPECT_EQ(Saved(kind, *store), file.Build());
  }
}

TEST_F(CallTaskStoreTest, TasksOfADayAreSortedByDueDateAndCallsAreNot) {
  const auto due = [](const std::string& subject, std::uint32_t year, std::uint32_t a = kNewWord) {
    return pw::test::Task30(subject, "", a, pw::test::WordB({7, 0, 2}, {year, 5, 6}));
  };
  const std::uint32_t noDue = kNewWord | 1U << 21;
  CallTaskBytes file = kTasks30.File();
  const std::vector<std::string> records = {due("c", 15), due("b1", 3), due("a", 9, noDue),
                                            due("b2", 3), pw::test::Task30("none", "")};
  file.days = {{1997, 1, records}};
  auto store = Load(kTasks30, file.Build());
  EXPECT_EQ(Subjects(*store), (std::vector<std::string>{"c", "b1", "a", "b2", "none"}));
  file.days[0].records = {records[2], records[4], records[1], records[3], records[0]};
  EXPECT_EQ(Saved(kTasks30, *store), file.Build());

  file = kCalls50.File();
  file.days = {{1997,
                1,
                {pw::test::Call50(1, 1, "late", "", kNewWord, 1, 0x00650102),
                 pw::test::Call50(2, 2, "soon", "", kNewWord, 1, 0x00620102)}}};
  store = Load(kCalls50, file.Build());
  EXPECT_EQ(Saved(kCalls50, *store), file.Build());
}

TEST_F(CallTaskStoreTest, WhatIsNoFileOfRecordsLoadsAsNone) {
  for (const FileKind& kind : kFileKinds) {
    const std::string header = kind.File().Build().substr(0, 26);
    const struct {
      std::string bytes;
      std::int32_t result;
      bool dirty;
    } cases[] = {
        {"", 0, false},
        {header.substr(0, 25), -1, false},
        {header, -1, true},
        {header + std::string(599, '\0'), -1, true},
        {header + std::string(600, '\0'), 0, true},
    };
    for (const auto& each : cases) {
      const auto store = Load(kind, each.bytes, each.result);
      EXPECT_EQ(store->Count(), 0U);
      EXPECT_EQ(store->IsDirty(), each.dirty) << each.bytes.size();
      const std::string rewritten = header + std::string(600, '\0');
      EXPECT_EQ(Saved(kind, *store), each.dirty ? rewritten : each.bytes);
    }
  }
}

TEST_F(CallTaskStoreTest, ACutTableFailsTheLoadButNotTheOtherYears) {
  CallTaskBytes file = kCalls50.File();
  file.days = {{1991, 5, {kCalls50.Record(1, "a", "")}}, {1992, 5, {kCalls50.Record(2, "b", "")}}};
  std::string bytes = file.Build();
  bytes.replace(28, 4, pw::test::Word(bytes.size() - 100, 4));
  const auto store = Load(kCalls50, bytes, -1);
  EXPECT_EQ(Subjects(*store), std::vector<std::string>{"b"});
  EXPECT_TRUE(store->IsDirty());
}

TEST_F(CallTaskStoreTest, TheFormatIsTheProcesssUntilAFileSaysOtherwise) {
  const char* key = "SOFTWARE\\Gullwing\\PairWise Desktop\\Version 1\\Main";
  platform.registry.Set(key, "Version", pw::NumberValue(50));
  EXPECT_EQ(WMTaskStore::CreateTaskStore(kPrefix), 0);
  EXPECT_EQ(*platform.files.Get(kTasks50.Path()), "WMWTASK50" + std::string(17 + 600, '\0'));
  platform.registry.Set(key, "Version", pw::NumberValue(49));
  EXPECT_EQ(WMTaskStore().Format(), FormatVersion::k50) << "it is fixed once";
  EXPECT_EQ(WMCallStore().Format(), FormatVersion::k30) << "and for each kind by itself";
  EXPECT_EQ(WMCallStore::CreateCallStore(kPrefix), 0);
  EXPECT_EQ(*platform.files.Get(kCalls50.Path()), "WMWCALL20" + std::string(17 + 600, '\0'));

  // A file sets it, one with another magic or without bytes doesn't.
  Load(kTasks30, kTasks30.File().Build());
  EXPECT_EQ(WMTaskStore().Format(), FormatVersion::k30);
  EXPECT_EQ(WMCallStore().Format(), FormatVersion::k30);
  Load(kCalls50, "");
  EXPECT_EQ(WMCallStore().Format(), FormatVersion::k30);
  CallTaskBytes other = kCalls50.File();
  other.magic = "WMWTASK50";
  const auto store = Load(kCalls50, other.Build());
  EXPECT_EQ(store->Format(), FormatVersion::k30);
  const auto tasks = Load(kTasks30, kTasks30.File().Build());
  Load(kTasks50, kTasks50.File().Build());
  EXPECT_EQ(Saved(kTasks50, *tasks), kTasks50.File().Build()) << "also for what is open";
  other.magic = "WMWCALL20";
  EXPECT_EQ(Saved(kCalls50, *store), other.Build()) << "what is behind the magic stays";
}

TEST_F(CallTaskStoreTest, AnEmptyFileGetsAHeaderWithItsFirstRecord) {
  platform.files.Put(kCalls50.Path(), "");
  WMCallStore store;
  ASSERT_EQ(store.Load(kPrefix), 0);
  EXPECT_EQ(Saved(kCalls50, store), "");
  store.Add(NewCall("c", 1999, 2, 1));
  CallTaskBytes expected{
      "WMWCALL20", std::string(16, '\0'), {{1999, 31, {pw::test::Call30("c", "")}}}};
  EXPECT_EQ(Saved(kCalls50, store), expected.Build());
}

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
  WMTaskStore::CreateTaskStore(kPrefix);
  WMCallStore calls;
  WMTaskStore tasks;
  for (int i = 0; i < 96; ++i) {
    ASSERT_EQ(calls.Add(NewCall(std::to_string(i), 1999, 5, 5)), 0);
    ASSERT_EQ(tasks.Add(NewTask(std::to_string(i), 1999, 5, 5), false), 0);
  }
  EXPECT_EQ(calls.Add(NewCall("one more", 1999, 5, 5)), 1511);
  EXPECT_EQ(tasks.Add(NewTask("one more", 1999, 5, 5), false), 1511);
  EXPECT_EQ(calls.Count(), 96U);
  EXPECT_EQ(tasks.Count(), 96U);
  EXPECT_EQ(calls.Add(NewCall("next day", 1999, 5, 6)), 0);
  calls.Remove(3);
  EXPECT_EQ(calls.Add(NewCall("in its place", 1999, 5, 5)), 0);
  EXPECT_EQ(CheckFrame(Saved(kCalls30, calls)), 2);
}

TEST_F(CallTaskStoreTest, TheCatchAllOfTasksStartsAfreshToo) {
  WMTaskStore::CreateTaskStore(kPrefix);
  WMTaskStore tasks;
  for (int i = 0; i < 97; ++i) ASSERT_EQ(tasks.Add(std::make_unique<CTaskRecord>(), false), 0);
  EXPECT_EQ(tasks.Count(), 97U);
  EXPECT_EQ(pw::calltask::ReadFrame(Saved(kTasks30, tasks)).days[0].bytes,
            pw::test::Task30("", "") + std::string(95, '\x09'));
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

TEST_F(CallTaskStoreTest, AYearWithoutRecordsHasNoEntry) {
  for (const FileKind& kind : kFileKinds) {
    CallTaskBytes file = kind.File();
    file.days = {{1991, 5, {kind.Record(1, "a", "note")}}, {1992, 0, {kind.Record(2, "b", "")}}};
    const auto store = Load(kind, file.Build());
    store->Remove(0);
    file.days.erase(file.days.begin());
    EXPECT_EQ(Saved(kind, *store), file.Build());
    store->Remove(0);
    file.days.clear();
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
  class Unreadable : public pw::FilesWrapper {
   public:
    using FilesWrapper::FilesWrapper;
    std::unique_ptr<pw::File> Open(const std::string& path, pw::OpenMode mode,
                                   pw::Sharing sharing) override {
      class Nothing : public pw::FileWrapper {
       public:
        using FileWrapper::FileWrapper;
        std::string Read(std::size_t) override { return {}; }
      };
      return std::make_unique<Nothing>(FilesWrapper::Open(path, mode, sharing));
    }
  };
  for (const FileKind& kind : kFileKinds) {
    EXPECT_EQ(kind.NewStore()->Load(kPrefix), -1) << "there is none";
    EXPECT_EQ(platform.files.Get(kind.Path()), std::nullopt);
    platform.files.Put(kind.Path(), kind.Sample().Build());
    platform.files.SetReadOnly(kind.Path(), true);
    EXPECT_EQ(kind.NewStore()->Load(kPrefix), -1) << "it couldn't be saved";
    platform.files.SetReadOnly(kind.Path(), false);
    Unreadable unreadable(platform.files);
    pw::Platform services = pw::CurrentPlatform();
    services.files = &unreadable;
    const pw::Platform before = pw::SetPlatform(services);
    EXPECT_EQ(kind.NewStore()->Load(kPrefix), -1);
    pw::SetPlatform(before);
    platform.files.Delete(kind.Path());
  }
}

}  // namespace
