#include "calendar/event_file.h"

#include <gtest/gtest.h>

#include "calendar/calendar_state.h"
#include "platform/testing/test_platform.h"
#include "tests/support/damage.h"
#include "tests/support/event_file_builder.h"
#include "timeplace/date.h"

namespace {

using pw::test::CheckedBlocks;
using pw::test::Day;
using pw::test::EventFileBytes;
using pw::test::ItemBytes;
using pw::test::kMonday;
using pw::test::Slot;
using pw::test::Word;

constexpr std::int64_t kMidnight = kMonday - 32400;
constexpr int kMondaysDay = 60;
constexpr std::size_t kFirstTable = 626;
constexpr std::size_t kFirstBlob = 626 + 6222;

// An item of that id, so many minutes into that Monday.
ItemBytes At(std::int64_t minutes, std::int64_t id = 0) {
  ItemBytes item;
  item.start = item.end = kMidnight + 60 * minutes;
  item.id = id;
  return item;
}

std::string DayOf(std::int64_t id) {
  return Day({{36, Slot({At(540, id).Build()})}});
}

// Three days of two years, each with an item, whose `start` isn't looked at.
EventFileBytes ThreeDays() {
  EventFileBytes file;
  file.days = {{1998, 60, DayOf(1)}, {1998, 61, DayOf(2)}, {1999, 60, DayOf(3)}};
  return file;
}

class EventFileTest : public testing::Test {
 protected:
  bool Read(const std::string& bytes) {
    plain.Clear();
    occurrences.Clear();
    pw::ByteReader(bytes).TakeInto(header);
    return ReadEvents(bytes, plain, occurrences);
  }
  std::string Written() const { return EncodeEvents(header, plain, occurrences).value(); }
  std::string Again(const std::string& bytes) {
    EXPECT_TRUE(Read(bytes));
    return Written();
  }

  // The ids of the plain items in these bytes; 0 alone if they can't be read.
  std::vector<std::int32_t> Ids(const std::string& bytes) {
    if (!Read(bytes)) return {0};
    std::vector<std::int32_t> ids;
    for (std::size_t i = 0; i < plain.Count(); ++i) ids.push_back(plain.Item(i).Id());
    return ids;
  }

  void Append(ItemList& list, const ItemBytes& item) {
    const std::string bytes = item.Build();
    pw::ByteReader in(bytes);
    auto read = std::make_unique<WMEventItem>();
    ASSERT_FALSE(read->Parse(in));
    list.Append(std::move(read));
  }

  pw::TestPlatform platform;
  pw::frame::Header header{};
  ItemList plain;
  ItemList occurrences;
};

using Ids32 = std::vector<std::int32_t>;

TEST_F(EventFileTest, ReadsAndWritesByteForByte) {
  EventFileBytes file = pw::test::SomeEvents();
  EXPECT_EQ(Again(file.Build()), file.Build());
  EXPECT_EQ(CheckedBlocks(Written()).size(), 5U);
  EXPECT_EQ(plain.Count(), 7U);
  ASSERT_EQ(occurrences.Count(), 2U);
  EXPECT_TRUE(occurrences.Item(0).IsOccurrence() && !occurrences.Item(0).IsChanged());
  EXPECT_TRUE(occurrences.Item(1).IsChanged() && !occurrences.Item(1).IsOccurrence());
  EXPECT_EQ(plain.Item(2).Subject(), "a~z");
  file.magic = "WMWCALE40";
  EXPECT_EQ(Again(file.Build()), file.Build());
  file.days.clear();
  EXPECT_EQ(Again(file.Build()), file.Build());
  EXPECT_EQ(Written().size(), 626U);
}

TEST_F(EventFileTest, YearsOutOfOrderAreReadAsTheyStandAndWrittenAscending) {
  EventFileBytes file = pw::test::SomeEvents();
  const std::string ascending = file.Build();
  std::rotate(file.days.begin(), file.days.begin() + 3, file.days.end());
  ASSERT_EQ(file.days.front().year, 2001);
  EXPECT_EQ(Again(file.Build()), ascending);
  EXPECT_EQ(plain.Item(0).Id(), 6);
  EXPECT_EQ(plain.Item(2).Id(), 1);
}

TEST_F(EventFileTest, ASlotBeginsAMinuteEarly) {
  const struct {
    int minutes, position;
  } cases[] = {{0, 0},    {13, 0},   {14, 1},   {28, 1},    {29, 2},    {43, 2},
               {44, 3},   {58, 3},   {59, 4},   {60, 4},    {73, 4},    {9 * 60, 36},
               {553, 36}, {554, 37}, {719, 48}, {1423, 94}, {1424, 95}, {1438, 95}};
  for (const auto& each : cases) {
    plain.Clear();
    const ItemBytes item = At(each.minutes);
    Append(plain, item);
    EXPECT_EQ(CheckedBlocks(Written()), std::vector{Day({{each.position, Slot({item.Build()})}})})
        << each.minutes;
  }
}

TEST_F(EventFileTest, TheFourthItemOfASlotIsLeftOut) {
  ItemBytes occurrence = At(540, 4);
  occurrence.flags = 4;
  Append(occurrences, occurrence);  // comes last, whenever it was appended
  const std::vector<ItemBytes> items = {At(553, 1), At(554, 5), At(540, 2), At(545, 3)};
  for (const ItemBytes& item : items) Append(plain, item);
  EXPECT_EQ(CheckedBlocks(Written()),
            std::vector{Day({{36, Slot({items[0].Build(), items[2].Build(), items[3].Build()})},
                             {37, Slot({items[1].Build()})}})});
}

TEST_F(EventFileTest, AMinuteBeforeMidnightIsWrittenAndNotReadAgain) {
  constexpr std::int64_t kYearsEnd = std::int64_t{305} * 1440;
  const ItemBytes monday = At(1439, 1), tuesday = At(1440, 2), last = At(kYearsEnd - 1, 3),
                  first = At(kYearsEnd, 4), before = At(kYearsEnd - 2, 5);
  for (const ItemBytes& item : {monday, tuesday, last, first, before}) Append(plain, item);
  const auto spilled = [](const std::string& day, const ItemBytes& item) {
    const std::string slot = Slot({item.Build()});
    return day + slot.substr(0, slot.size() - 1);
  };
  const std::string bytes = Written();
  EXPECT_EQ(CheckedBlocks(bytes),
            (std::vector{spilled(Day({}), monday), Day({{0, Slot({tuesday.Build()})}}),
                         spilled(Day({{95, Slot({before.Build()})}}), last),
                         Day({{0, Slot({first.Build()})}})}));
  EXPECT_EQ(Ids(bytes), (Ids32{2, 5, 4}));
}

TEST_F(EventFileTest, ItemsBefore1970AreLeftOut) {
  for (const std::int64_t start : {-1, 0, -86400, 1}) {
    ItemBytes item;
    item.start = start;
    item.id = start;
    Append(plain, item);
  }
  EXPECT_EQ(Ids(Written()), (Ids32{0, 1}));
}

TEST_F(EventFileTest, ItemsStandWhereTheirStartSays) {
  // Three days later, in another slot, and behind an empty column.
  EventFileBytes file;
  file.days = {{1998, kMondaysDay + 3, Day({{5, "~~" + At(540, 1).Build() + "\x09"}})}};
  EventFileBytes moved;
  moved.days = {{1998, kMondaysDay, DayOf(1)}};
  EXPECT_EQ(Again(file.Build()), moved.Build());
}

TEST_F(EventFileTest, ABadDayCostsThatDayAndOneAtAYearsEndFurtherYears) {
  ItemBytes flagged = At(600, 9), places = At(600, 9), label = At(600, 9);
  flagged.flags = 1 << 23;
  places.places = {pw::test::PairBytes{}};
  places.places[0].first = "place";
  label.label = "x";
  ItemBytes zoned = At(600, 9);
  zoned.zone = 2561;
  std::string badLabel = label.Build();
  badLabel[36] = '\x02';
  const std::string good = Slot({At(540, 8).Build()});
  const std::string bad[] = {
      Day({{36, good}, {40, Slot({flagged.Build()})}}),
      Day({{36, good}, {40, Slot({places.Build()})}}),
      Day({{36, good}, {40, Slot({zoned.Build()})}}),
      Day({{36, good}, {40, Slot({badLabel})}}),
      Day({{36, good}, {37, "?"}}),
      DayOf(8).substr(1),
      DayOf(8).substr(0, DayOf(8).size() - 1),
      "\xFF",
  };
  for (const std::string& blob : bad) {
    for (std::size_t at = 0; at < 3; ++at) {
      EventFileBytes file = ThreeDays();
      file.days[at].block = blob;
      const Ids32 left[] = {{2, 3}, {1}, {1, 2}};
      EXPECT_EQ(Ids(file.Build()), left[at]) << at;
    }
  }
}

TEST_F(EventFileTest, WhatADamagedEntryCosts) {
  const std::string whole = ThreeDays().Build();
  const std::size_t entry = kFirstTable + std::size_t{17} * 60;  // of the first day
  const std::size_t lastEntry = entry + 17;                      // of its year
  const std::string minus = Word(0xFFFFFFFF, 4);
  const struct {
    std::size_t at;
    std::string bytes;
    Ids32 ids;
  } cases[] = {
      {entry + 9, minus, {2, 3}},
      {entry + 9, Word(DayOf(1).size() - 1, 4), {2, 3}},
      {entry + 9, Word(DayOf(1).size() + 1, 4), {1, 2, 3}},  // the rest isn't looked at
      {entry + 9, Word(0, 4), {2, 3}},
      {entry, minus, {2, 3}},
      {entry, Word(0, 4), {2, 3}},
      {entry, Word(kFirstBlob + DayOf(1).size(), 4), {2}},  // the last day of the year is bad
      {entry + 4, std::string(5, '\xFF'), {1, 2, 3}},
      {entry + 13, minus, {1, 2, 3}},
      {lastEntry + 9, minus, {1}},
      {lastEntry + 9, Word(0, 4), {1, 3}},
      {lastEntry + 17 + 9, Word(1, 4), {1, 2}},  // a day that isn't there
      {26, Word(0, 2), {3}},
      {26, Word(0xFFFF, 2), {3}},  // a year before 1900 is unused
      {26, Word(0, 6), {3}},
      {28, Word(0, 4), {0}},
      {28, minus, {0}},
      {28, Word(whole.size() - 6221, 4), {0}},
      {26 + 99 * 6, Word(1, 6), {0}},
      {26 + 99 * 6, Word(1, 2) + Word(kFirstTable, 4), {1, 2, 3}},
  };
  for (const auto& each : cases) {
    std::string damaged = whole;
    damaged.replace(each.at, each.bytes.size(), each.bytes);
    EXPECT_EQ(Ids(damaged), each.ids) << each.at << " " << each.bytes.size();
  }
}

TEST_F(EventFileTest, EveryItemMadeTakesANumber) {
  EventFileBytes file = ThreeDays();
  const std::string item = At(540).Build();
  file.days[0].block = Day({{36, Slot({item, item, item.substr(0, 20)})}});  // three, and dropped
  file.days[1].block = Day({{36, Slot({item, "?"})}});                       // one, and dropped
  file.days.pop_back();
  EXPECT_EQ(Ids(file.Build()), Ids32());
  EXPECT_EQ(NewItemId() >> 16, 4U);
}

// A hundred years of one table, whose days are all of the same blob.
TEST_F(EventFileTest, ABlobIsReadOnce) {
  EventFileBytes file;
  file.days = {{1998, 0, Day({{0, Slot({At(0).Build(), At(0).Build(), At(0).Build()})}})}};
  std::string bytes = file.Build();
  for (std::size_t at = 0; at < 100; ++at) {
    bytes.replace(26 + 6 * at, 6, Word(1 + at, 2) + Word(kFirstTable, 4));
  }
  for (std::size_t day = 1; day < 365; ++day) {
    bytes.replace(kFirstTable + 17 * day, 17, bytes.substr(kFirstTable, 17));
  }
  EXPECT_TRUE(Read(bytes));
  EXPECT_EQ(plain.Count(), 3U);
}

// Only what was read counts, not what an entry names.
TEST_F(EventFileTest, EntriesThatNameTheWholeFileCostTheirDaysAlone) {
  EventFileBytes file;
  for (int day = 0; day < 5; ++day) file.days.push_back({1998, day, DayOf(day)});
  std::string bytes = file.Build();
  for (std::size_t day = 0; day < 3; ++day) {
    bytes.replace(kFirstTable + 17 * day, 17,
                  Word(0, 4) + Word(0, 5) + Word(bytes.size(), 4) + Word(0, 4));
  }
  EXPECT_EQ(Ids(bytes), (Ids32{3, 4}));
}

TEST_F(EventFileTest, CutAtEveryLength) {
  const std::size_t blob = DayOf(1).size();
  pw::test::ForEachCut(ThreeDays().Build(), [&](const std::string& cut) {
    const bool hasTables = cut.size() >= kFirstBlob + 2 * blob + 6222;
    EXPECT_EQ(Ids(cut), hasTables ? Ids32({1, 2}) : Ids32({0}));
  });
  // Of the last year alone.
  EventFileBytes year = ThreeDays();
  year.days.pop_back();
  const auto readsOneOrNone = [&](const std::string& cut) {
    EXPECT_EQ(Ids(cut), cut.size() >= kFirstBlob + blob ? Ids32{1} : Ids32{});
  };
  pw::test::ForEachCut(year.Build(), readsOneOrNone, kFirstBlob);
}

}  // namespace
