#include "calendar/recurring_item.h"

#include <gtest/gtest.h>

#include "base/process_wide.h"
#include "calendar/zone_scope.h"
#include "tests/support/zone_files.h"
#include "timeplace/zones.h"

namespace {

using Dates = std::vector<std::int32_t>;

constexpr std::int32_t kNewYork = 1, kSydney = 2, kIndia = 4, kLima = 6, kNoCity = 9;

// A week of days at nine in the morning of Lima, without daylight time, by default.
class RecurringItemTest : public testing::Test {
 protected:
  void SetUp() override {
    pw::test::PutZoneFiles(platform, pw::test::SomeCities(), "Lima");
    ASSERT_TRUE(LoadHomeZone());
  }

  static pw::recurring::Record Week(std::int32_t zone, std::int32_t firstDay) {
    pw::recurring::Record record;
    record.zone = zone;
    record.rule.patternKind = pw::calendar::kDaily;
    record.rule.firstDay = firstDay;
    record.rule.lastDay = firstDay + 6 * kSecondsPerDay;
    return record;
  }

  static Dates Days(std::int32_t first, const std::vector<std::int32_t>& numbers) {
    Dates days;
    for (const std::int32_t number : numbers) days.push_back(first + number * kSecondsPerDay);
    return days;
  }

  // Nine o'clock in Lima on 2 March 1998.
  static constexpr std::int32_t kMonday = 888847200;

  pw::TestPlatform platform;
};

TEST_F(RecurringItemTest, OccurrencesAreTheRulesWithoutItsExceptions) {
  auto record = Week(0, kMonday);
  for (const std::int32_t day : {4, 1, 30}) {
    WMRecurringException exception;
    exception.deleted = day != 1;  // a changed occurrence stands elsewhere, and is taken out too
    exception.date = kMonday + day * kSecondsPerDay - 5 * kSecondsPerHour;  // by date
    record.exceptions.push_back(exception);
  }
  WMRecurringItem item(record);
  EXPECT_EQ(item.DeletedDates(), Days(kMonday - 5 * kSecondsPerHour, {1, 4, 30}));
  EXPECT_EQ(item.Occurrences(), Days(kMonday, {0, 2, 3, 5, 6}));

  AddDeletedDate(item, kMonday + 6 * kSecondsPerDay);
  EXPECT_EQ(item.Occurrences(), Days(kMonday, {0, 2, 3, 5}));
  item.rule.interval = 3;
  EXPECT_EQ(item.Occurrences(), Days(kMonday, {0, 3}));
}

// The walk for a date ends at the first later occurrence: that of the Sunday before the Saturday,
// until it is taken out itself.
TEST_F(RecurringItemTest, ExceptionsAreTakenOutInTheirOrder) {
  constexpr std::int32_t kSaturday = kMonday + 61 * kSecondsPerDay;
  auto record = Week(0, kSaturday);
  record.rule.patternKind = pw::calendar::kMonthlyByWeekday;
  record.rule.weekMask = 1;
  record.rule.weekdayMask = 0x41;
  record.exceptions.resize(2);
  for (const int first : {0, 1}) {
    record.exceptions[0].date = kSaturday + first * kSecondsPerDay;
    record.exceptions[1].date = kSaturday + (1 - first) * kSecondsPerDay;
    const WMRecurringItem item(record);
    EXPECT_EQ(item.Occurrences(), first == 0 ? Days(kSaturday, {0}) : Dates());
    EXPECT_EQ(item.DeletedDates(), Days(kSaturday, {0, 1}));
  }
}

// The first weekend of May 1998, of which the rule gives the Sunday first: a start on the Saturday
// is looked for behind it, where none is left.
TEST_F(RecurringItemTest, LinkedBySomeStartsItLacksTheOthers) {
  constexpr std::int32_t kSaturday = kMonday + 61 * kSecondsPerDay;
  WMRecurringItem item(Week(0, kSaturday));
  item.rule.patternKind = pw::calendar::kMonthlyByWeekday;
  item.rule.weekMask = 1;
  item.rule.weekdayMask = 0x41;
  ASSERT_EQ(item.Occurrences(), Days(kSaturday, {1, 0}));
  item.LinkByStarts({kSaturday + kSecondsPerDay});
  EXPECT_EQ(item.Occurrences(), Days(kSaturday, {1}));
  EXPECT_EQ(item.DeletedDates(), Days(kSaturday, {0}));
  ASSERT_EQ(item.Exceptions().size(), 1U);
  EXPECT_TRUE(item.Exceptions()[0].deleted);
  item.LinkByStarts({kSaturday});
  EXPECT_EQ(item.DeletedDates(), Days(kSaturday, {0, 1}));
}

TEST_F(RecurringItemTest, DeletedDatesAreFiledBehindTheLastEarlierOne) {
  WMRecurringItem item;
  for (const std::int32_t date : {5, 9, 5, 9, 7, 3, 3, 5, -1}) item.AddDeletedDate(date);
  EXPECT_EQ(item.DeletedDates(), (Dates{-1, 3, 5, 5, 7, 9, 9})) << "only the first is never twice";
}

// In the week of 29 March 1998 daylight time ends in Sydney, an hour more by Lima's clocks.
TEST_F(RecurringItemTest, TheDatesAreThoseOfItsOwnZone) {
  const std::int32_t before = 888847200 + 25 * kSecondsPerDay;
  const struct {
    std::int32_t working, zone, hoursBetween;
  } cases[] = {
      {kLima, kLima, 144},     {kLima, kSydney, 145}, {kNewYork, kSydney, 145}, {kSydney, 0, 144},
      {kSydney, kNoCity, 144}, {kSydney, -1, 144},    {kSydney, kSydney, 145},  {kSydney, 300, 144},
  };
  for (const auto& each : cases) {
    ASSERT_TRUE(SwitchZone(each.working, false) || each.working == kLima);
    ASSERT_EQ(WorkingZoneId(), each.working);
    auto record = Week(each.zone, before);
    record.rule.lastDay += kSecondsPerHour;
    WMRecurringItem item(record);
    const Dates dates = item.Occurrences();
    ASSERT_EQ(dates.size(), 7U);
    EXPECT_EQ((dates.back() - dates.front()) / kSecondsPerHour, each.hoursBetween)
        << each.working << " " << each.zone;
    EXPECT_EQ(WorkingZoneId(), each.working);
    SwitchZone(0, false);
  }
}

// Before midnight in Sydney it is the morning in New York, on the date of the next occurrence.
TEST_F(RecurringItemTest, DatesAreTakenOutByTheClocksOfItsOwnZone) {
  ASSERT_TRUE(SwitchZone(kSydney, false));
  const std::int32_t nine = LocalStampToSeconds({1998, 6, 1, 9, 0, 0});
  auto record = Week(kSydney, nine);
  record.exceptions.resize(2);
  record.exceptions[0].date = LocalStampToSeconds({1998, 6, 3, 23, 30, 0});
  record.exceptions[1].date = LocalStampToSeconds({1998, 6, 6, 0, 10, 0});
  ASSERT_TRUE(SwitchZone(kNewYork, false));
  const WMRecurringItem item(record);
  EXPECT_EQ(item.Occurrences(), Days(nine, {0, 1, 3, 4, 6}));
  EXPECT_EQ(WorkingZoneId(), kNewYork);
}

// Other clocks with the home city's number, before it, and others with India's, behind it.
TEST_F(RecurringItemTest, OfCitiesWithOneNumberTheHomeCityOrTheFirstCounts) {
  auto cities = pw::test::SomeCities();
  cities.insert(cities.begin(), pw::test::City("Aarhus", "Denmark", kLima, 100));
  cities.push_back(pw::test::City("Zurich", "Switzerland", kIndia, 100));
  pw::test::PutZoneFiles(platform, cities, "Lima");
  pw::ResetProcessWideState();
  ASSERT_TRUE(LoadHomeZone());
  const std::int32_t noon = LocalStampToSeconds({1998, 6, 1, 12, 0, 0});
  const auto hourIn = [&](std::int32_t zone) {
    const pw::calendar::ZoneScope scope(zone);
    return SecondsToLocal(noon).hour;
  };
  for (const std::int32_t working : {kLima, kSydney, kIndia}) {
    const pw::calendar::ZoneScope scope(working);
    const std::int32_t here = SecondsToLocal(noon).hour;
    EXPECT_EQ(hourIn(kLima), 12) << working;
    EXPECT_EQ(hourIn(kIndia), 22) << working << ": half past, by Calcutta's clocks";
    EXPECT_EQ(hourIn(kNoCity), 12) << working;
    EXPECT_EQ(SecondsToLocal(noon).hour, here) << working;
  }
  EXPECT_EQ(SecondsToLocal(noon).hour, 12);
}

}  // namespace
