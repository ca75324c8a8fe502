#include "tests/calltask/store_fixture.h"

namespace pw::test {
namespace {

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

TEST_F(CallTaskStoreTest, RecordsComeByAscendingDaysAndOfOneKeyTheLaterDayThatCanBeReadCounts) {
  for (const FileKind& kind : kFileKinds) {
    CallTaskBytes file = kind.File();
    file.days = {{1991, 5, {kind.Record(1, "a", "note"), kind.Record(2, "b", "note")}},
                 {1992, 5, {kind.Record(3, "c", "note")}}};
    const std::string sorted = file.Build();
    std::string bytes = sorted;
    bytes.replace(26, 12, sorted.substr(32, 6) + sorted.substr(26, 6));
    const auto store = Load(kind, bytes);
    EXPECT_EQ(Subjects(*store), (std::vector<std::string>{"a", "b", "c"}));
    EXPECT_EQ(Saved(kind, *store), sorted);

    bytes = sorted;
    bytes[26] = 92;
    EXPECT_EQ(Subjects(*Load(kind, bytes)), std::vector<std::string>{"c"});
    const std::size_t secondTable = 626 + 6222 + file.days[0].Block().size();
    bytes.replace(secondTable + 5 * std::size_t{17} + 9, 4, Word(5, 4));
    EXPECT_EQ(Subjects(*Load(kind, bytes)), (std::vector<std::string>{"a", "b"}));
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
    const std::size_t offset = NumberAt(whole, seventh, 4);
    odd.replace(626 + 9, 4, Word(whole.size() - 6848, 4));  // to the end of the file
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
    bytes.replace(626 + 5 * 17 + 9, 4, Word(size, 4));
    const auto store = Load(kind, bytes);
    EXPECT_EQ(Subjects(*store), std::vector<std::string>{"good"});
    EXPECT_EQ(Saved(kind, *store), left.Build());
  }
}

TEST_F(CallTaskStoreTest, TasksOfADayAreSortedByDueDateAndCallsAreNot) {
  const auto due = [](const std::string& subject, std::uint32_t year, std::uint32_t a = kNewWord) {
    return Task30(subject, "", a, WordB({7, 0, 2}, {year, 5, 6}));
  };
  const std::uint32_t noDue = kNewWord | 1U << 21;
  CallTaskBytes file = kTasks30.File();
  const std::vector<std::string> records = {due("c", 15), due("b1", 3), due("a", 9, noDue),
                                            due("b2", 3), Task30("none", "")};
  file.days = {{1997, 1, records}};
  auto store = Load(kTasks30, file.Build());
  EXPECT_EQ(Subjects(*store), (std::vector<std::string>{"c", "b1", "a", "b2", "none"}));
  file.days[0].records = {records[2], records[4], records[1], records[3], records[0]};
  EXPECT_EQ(Saved(kTasks30, *store), file.Build());

  file = kCalls50.File();
  file.days = {{1997,
                1,
                {Call50(1, 1, "late", "", kNewWord, 1, 0x00650102),
                 Call50(2, 2, "soon", "", kNewWord, 1, 0x00620102)}}};
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
  bytes.replace(28, 4, Word(bytes.size() - 100, 4));
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
  CallTaskBytes expected{"WMWCALL20", std::string(16, '\0'), {{1999, 31, {Call30("c", "")}}}};
  EXPECT_EQ(Saved(kCalls50, store), expected.Build());
}

}  // namespace
}  // namespace pw::test
