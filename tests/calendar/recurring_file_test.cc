#include "calendar/recurring_file.h"

#include <algorithm>
#include <random>

#include <gtest/gtest.h>

#include "calendar/calendar_state.h"
#include "platform/testing/test_platform.h"
#include "tests/support/damage.h"
#include "tests/support/other_files.h"
#include "tests/support/recurring_file_builder.h"

namespace {

using pw::test::RecurringFileBytes;

constexpr const char* kPath = "C:\\Data\\Recr.WMW";
constexpr std::int64_t kSecond = 1000000000;

std::unique_ptr<WMRecurringItem> SeriesOf(std::int32_t key) {
  auto item = std::make_unique<WMRecurringItem>();
  item->key = key;
  return item;
}

class RecurringFileTest : public testing::Test {
 protected:
  void SetUp() override { platform.files.PutFolder("C:\\Data"); }

  std::string Saved() const { return platform.files.Get(kPath).value_or("no file"); }

  // What a load and a save make of these bytes; and how many series were read.
  std::string SavedAgain(const std::string& bytes, bool loads, std::size_t* count = nullptr) {
    platform.files.Put(kPath, bytes);
    WMRecurringFile file;
    EXPECT_EQ(file.Load(kPath), loads) << bytes.size();
    if (count != nullptr) *count = file.Count();
    for (std::size_t i = 0; i < file.Count(); ++i) file.Item(i).Occurrences();
    file.Save();
    return Saved();
  }

  pw::TestPlatform platform;
};

TEST_F(RecurringFileTest, LoadsAndSavesByteForByte) {
  for (const bool is50 : {true, false}) {
    const RecurringFileBytes file = pw::test::SomeSeries(is50);
    std::size_t count = 0;
    // The version is the file's own.
    OrganiserVersion() = is50 ? 40 : 50;
    EXPECT_EQ(SavedAgain(file.Build(), true, &count), file.Build());
    EXPECT_EQ(count, 4U);
  }
}

TEST_F(RecurringFileTest, WhereThereIsNoneAnEmptyOneIsMade) {
  const struct {
    std::int32_t organiser;
    const char* magic;
  } cases[] = {{50, "WMWREC50"}, {0, "WMWREC50"}, {40, "XQXREC30"}};
  for (const auto& each : cases) {
    OrganiserVersion() = each.organiser;
    for (const bool isEmpty : {false, true}) {
      platform.files.Delete(kPath);
      if (isEmpty) platform.files.Put(kPath, "");
      WMRecurringFile file;
      EXPECT_TRUE(file.Load(kPath));
      EXPECT_EQ(file.Count(), 0U);
      EXPECT_EQ(Saved(), RecurringFileBytes{.magic = each.magic}.Build());
      EXPECT_EQ(Saved().size(), 28U);
    }
  }
}

TEST_F(RecurringFileTest, ASaveWithoutALoadMakesTheFileOfTheRegistrysVersion) {
  constexpr const char* kMain = "Software\\Gullwing\\PairWise Desktop\\Version 1\\Main";
  for (const char* magic : {"XQXREC30", "WMWREC50"}) {
    WMRecurringFile file;
    file.SetPath(kPath);
    file.Append(SeriesOf(5));
    file.Save();
    EXPECT_EQ(Saved().substr(0, 8), magic);
    WMRecurringFile again;
    EXPECT_TRUE(again.Load(kPath));
    EXPECT_EQ(again.Count(), 1U);
    platform.registry.Set(kMain, "Version", pw::NumberValue(50));
  }
}

TEST_F(RecurringFileTest, WhatCanNotBeReadIsGoneAtTheSave) {
  RecurringFileBytes file = pw::test::SomeSeries(true);
  const std::string whole = file.Build();
  // An entry with another tag is passed over.
  file.tags = {0x32C9, 0x32C8};
  std::size_t count = 0;
  const std::string saved = SavedAgain(file.Build(), true, &count);
  EXPECT_EQ(count, 3U);
  file.tags.clear();
  file.records.erase(file.records.begin() + 1);
  EXPECT_EQ(saved, file.Build());

  // Cut at every length: no series without the index, and no more than are there whole.
  const auto use = [&](const std::string& cut) {
    std::size_t records = 0;
    std::size_t end = 60;
    for (const std::string& record : pw::test::SomeSeries(true).records) {
      end += record.size();
      if (cut.size() >= end) ++records;
    }
    SavedAgain(cut, cut.size() >= 28 && cut.size() < 60, &count);
    EXPECT_EQ(count, records);
  };
  pw::test::ForEachCut(whole, use, 1);
}

TEST_F(RecurringFileTest, AFailedOpenLeavesNoSeriesAndTheFile) {
  const std::string bytes = pw::test::SomeSeries(true).Build();
  platform.files.Put(kPath, bytes);
  platform.files.FailOpen(kPath);
  WMRecurringFile file;
  EXPECT_FALSE(file.Load(kPath));
  EXPECT_EQ(file.Count(), 0U);
  file.Save();
  EXPECT_EQ(Saved(), bytes);
  platform.files.StopFailing();
  file.Append(SeriesOf(5));
  file.Save();
  EXPECT_EQ(Saved().size(), 28U + 8 + 68) << "which a later save makes anew";
}

TEST_F(RecurringFileTest, AFileThatIsTooLargeStaysAsItIs) {
  const std::string bytes = pw::test::SomeSeries(true).Build();
  platform.files.Put(kPath, bytes);
  WMRecurringFile file;
  {
    const pw::test::InPlaceOfFiles<
        pw::test::OpenAs<pw::test::FileOfSize<pw::recurring::kLargestFile + 1>>>
        huge;
    EXPECT_FALSE(file.Load(kPath));
    EXPECT_EQ(file.Count(), 0U);
    file.Append(SeriesOf(5));
    file.Save();
    EXPECT_EQ(Saved(), bytes);
  }
  EXPECT_TRUE(file.Load(kPath));
  EXPECT_EQ(file.Count(), 4U);
}

TEST_F(RecurringFileTest, ALoadIsInsteadOfTheOneBefore) {
  constexpr const char* kOther = "C:\\Data\\Other.WMW";
  const std::string first = pw::test::SomeSeries(true).Build();
  RecurringFileBytes second = pw::test::SomeSeries(false);
  second.records.pop_back();
  platform.files.Put(kPath, first);
  platform.files.Put(kOther, second.Build());
  WMRecurringFile file;
  ASSERT_TRUE(file.Load(kPath));
  EXPECT_TRUE(file.FindByKey(-7));
  EXPECT_TRUE(file.Item(3).linked) << "its key is in the file";
  ASSERT_TRUE(file.Load(kOther));
  EXPECT_EQ(file.Version(), pw::recurring::FormatVersion::k30);
  EXPECT_EQ(file.Count(), 3U);
  EXPECT_FALSE(file.FindByKey(-7));
  EXPECT_FALSE(file.Item(0).linked);
  file.Remove(0);
  file.Save();
  second.records.erase(second.records.begin());
  EXPECT_EQ(platform.files.Get(kOther), second.Build());
  EXPECT_EQ(Saved(), first);
}

TEST_F(RecurringFileTest, AHeaderThatIsNotWrittenDropsAll) {
  for (const std::uint64_t written : {27, 28}) {
    platform.files.Put(kPath, pw::test::SomeSeries(true).Build());
    WMRecurringFile file;
    ASSERT_TRUE(file.Load(kPath));
    platform.files.FailWritesAfter(written);
    file.Save();
    EXPECT_EQ(file.Count(), written == 28 ? 4U : 0U);
    EXPECT_EQ(file.FindByKey(-7).has_value(), written == 28);
    EXPECT_EQ(Saved().size(), written);
    platform.files.StopFailing();
  }
}

TEST_F(RecurringFileTest, StampsAreTheSeriesOwnOrThatOfTheFile) {
  const struct {
    bool is50;
    std::int64_t written;
    std::int32_t stamp;
  } cases[] = {
      {true, 900000000, 890000000},
      {false, 900000000, 900000000},
      {false, 0, 0},
      {false, -1, 0},
      {false, 1609459199, 1609459199},
      {false, 1609459200, 0},
      {false, 3000000000, 0},
  };
  for (const auto& each : cases) {
    platform.files.Put(kPath, pw::test::SomeSeries(each.is50).Build());
    platform.files.SetLastWrite(kPath, each.written * kSecond + 5);
    WMRecurringFile file;
    ASSERT_TRUE(file.Load(kPath));
    EXPECT_EQ(file.Stamp(0), each.stamp) << each.written;
  }
  // A record that is cut ends the load before it looks.
  std::string cut = pw::test::SomeSeries(false).Build();
  cut.pop_back();
  platform.files.Put(kPath, cut);
  platform.files.SetLastWrite(kPath, 900000000 * kSecond);
  WMRecurringFile file;
  ASSERT_FALSE(file.Load(kPath));
  EXPECT_EQ(file.Stamp(0), 0);
}

TEST_F(RecurringFileTest, IdsAreTheKeysAndTheFirstOfSeveralIsFound) {
  WMRecurringFile file;
  for (const std::int32_t key : {12, -7, 12, 0}) file.Append(SeriesOf(key));
  EXPECT_EQ(file.IdText(1), "Recurring:-7");
  const struct {
    const char* text;
    std::optional<std::size_t> index;
  } cases[] = {
      {"Recurring:12", 0},
      {"Recurring: 12x", 0},
      {"12", 0},
      {"Recurring:-7", 1},
      {"Recurring:", 3},
      {"Recurring:4294967289", 1},
      {"Recurring:13", {}},
      {"", 3},
  };
  for (const auto& each : cases) EXPECT_EQ(file.FindByIdText(each.text), each.index) << each.text;
}

// Against a plain list.
TEST_F(RecurringFileTest, LookupsFollowEveryChange) {
  WMRecurringFile file;
  std::vector<std::int32_t> keys;
  std::mt19937 random(3);
  for (int round = 0; round < 2000; ++round) {
    const auto key = static_cast<std::int32_t>(random() % 20);
    const std::size_t index = keys.empty() ? 0 : random() % keys.size();
    const auto change = random() % 3;
    if (change == 0 || keys.empty()) {
      keys.push_back(key);
      EXPECT_EQ(file.Append(SeriesOf(key)), keys.size() - 1);
    } else if (change == 1) {
      keys[index] = key;
      file.SetKey(index, key);
    } else {
      keys.erase(keys.begin() + static_cast<std::ptrdiff_t>(index));
      file.Remove(index);
    }
    ASSERT_EQ(file.Count(), keys.size());
    for (std::size_t i = 0; i < keys.size(); ++i) ASSERT_EQ(file.Key(i), keys[i]);
    for (std::int32_t each = 0; each < 20; ++each) {
      const auto first = std::find(keys.begin(), keys.end(), each);
      std::optional<std::size_t> expected;
      if (first != keys.end()) expected = static_cast<std::size_t>(first - keys.begin());
      ASSERT_EQ(file.FindByKey(each), expected);
    }
  }
}

}  // namespace
