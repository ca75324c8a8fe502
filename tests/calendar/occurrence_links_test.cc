#include "calendar/occurrence_links.h"

#include "calendar/rule_expansion.h"
#include "tests/calendar/calendar_fixture.h"

namespace pw::test {
namespace {

using Dates = std::vector<std::int32_t>;

// The occurrences and series of an older calendar.
class LinksTest : public CalendarTest {
 protected:
  // A daily series of an hour, from ten o'clock UTC on a day of May.
  void AddSeries(const std::string& subject, std::int32_t day, std::int32_t days) {
    auto item = std::make_unique<WMRecurringItem>();
    item->detail.SetSubject(subject);
    item->rule.patternKind = calendar::kDaily;
    item->rule.firstDay = At(day);
    item->rule.lastDay = At(day + days - 1);
    const WMBrokenTime local = SecondsToLocal(At(day));
    item->detail.SetStartTime(local.hour, local.min);
    item->detail.SetEndTime(local.hour + 1, local.min);
    series.Append(std::move(item));
  }
  void AddItems(const std::string& subject, const Dates& days, std::int32_t created) {
    for (const std::int32_t day : days) {
      auto item = NewItem(subject, At(day), created);
      item->detail.SetOccurrence(true);
      occurrences.Append(std::move(item));
    }
  }
  static std::int32_t At(std::int32_t day) { return PlainSeconds(1999, 5, day, 10, 0, 0); }

  // Days of May on which a series takes place, and those that were deleted.
  Dates Days(std::size_t index) { return DaysOf(series.Item(index).Occurrences()); }
  Dates Deleted(std::size_t index) { return DaysOf(series.Item(index).DeletedDates()); }
  static Dates DaysOf(Dates dates) {
    for (std::int32_t& date : dates) date = (date - At(0)) / kSecondsPerDay;
    return dates;
  }
  Dates Keys() {
    Dates keys;
    for (std::size_t i = 0; i < occurrences.Count(); ++i) {
      keys.push_back(occurrences.Item(i).Created());
    }
    return keys;
  }

  WMRecurringFile series;
  ItemList occurrences;
};

TEST_F(LinksTest, OneKeyForEachSeriesWhereAllFit) {
  AddSeries("tea", 1, 4);
  AddSeries("tea", 11, 3);
  AddSeries("walk", 1, 2);
  AddItems("walk", {1, 2}, 500);
  AddItems("tea", {11, 13}, 600);
  AddItems("tea", {1, 2, 3, 4}, 700);
  LinkOlderFile(occurrences, series);
  EXPECT_EQ(series.Key(0), 700) << "told by their dates";
  EXPECT_EQ(series.Key(1), 600);
  EXPECT_EQ(series.Key(2), 500);
  EXPECT_EQ(Deleted(0), Dates());
  EXPECT_EQ(Deleted(1), Dates{12});
  EXPECT_EQ(Days(1), (Dates{11, 13}));
  const auto exceptions = series.Item(1).Exceptions();
  ASSERT_EQ(exceptions.size(), 1U);
  EXPECT_TRUE(exceptions[0].deleted);
  EXPECT_EQ(exceptions[0].date, At(12));
  EXPECT_EQ(exceptions[0].itemCreated, 0U);
  EXPECT_TRUE(series.Item(1).exceptions.empty()) << "nothing is held";
  EXPECT_EQ(Keys(), (Dates{500, 500, 600, 600, 700, 700, 700, 700}));
  EXPECT_EQ(LastSeriesKey(), 0);
}

// An organiser takes some seconds to write a series.
TEST_F(LinksTest, KeysOfAFewSecondsAreOneWhereThereAreTooMany) {
  AddSeries("tea", 1, 6);
  AddItems("tea", {1, 2}, 1019);
  AddItems("tea", {3}, 1000);
  AddItems("tea", {4, 5, 6}, 1038);
  LinkOlderFile(occurrences, series);
  EXPECT_EQ(Keys(), Dates(6, 1019)) << "the one that came first";
  EXPECT_EQ(series.Key(0), 1019);
  EXPECT_EQ(Deleted(0), Dates());
}

// An item behind the series' range is of it by its key alone.
TEST_F(LinksTest, NineteenSecondsAreFewAndTwentyAreNot) {
  for (const std::int32_t apart : {19, 20}) {
    series.Close();
    occurrences.Clear();
    AddSeries("tea", 1, 2);
    AddItems("tea", {1, 2}, 1000);
    AddItems("tea", {9}, 1000 + apart);
    LinkOlderFile(occurrences, series);
    EXPECT_EQ(Keys(), (Dates{1000, 1000, apart == 19 ? 1000 : 1020}));
  }
}

TEST_F(LinksTest, KeysTwentySecondsApartOrOfOtherTextsStayApart) {
  AddSeries("tea", 1, 4);
  AddItems("tea", {1, 2}, 1000);
  AddItems("tea", {3, 4}, 1020);
  AddItems("walk", {1}, 1001);
  LinkOlderFile(occurrences, series);
  EXPECT_EQ(Keys(), (Dates{1000, 1000, 1000, 1000, 1001})) << "each is linked by itself then";
  EXPECT_TRUE(series.Item(0).linked);
  EXPECT_EQ(Deleted(0), Dates());
}

TEST_F(LinksTest, KeysThatLookAlikeStayWhereThereAreNotTooMany) {
  AddSeries("tea", 1, 2);
  AddSeries("tea", 11, 2);
  AddItems("tea", {1, 2}, 500);
  AddItems("tea", {11, 12}, 501);
  LinkOlderFile(occurrences, series);
  EXPECT_EQ(Keys(), (Dates{500, 500, 501, 501}));
}

// One key fits no series: what was given before is taken back, and each item linked by itself.
TEST_F(LinksTest, WhereOneKeyFitsNothingItemsAreLinkedOneByOne) {
  AddSeries("tea", 1, 2);
  AddSeries("walk", 1, 2);
  AddItems("tea", {1, 2}, 500);
  AddItems("stray", {1}, 600);
  LinkOlderFile(occurrences, series);
  EXPECT_EQ(series.Key(0), 500);
  EXPECT_EQ(Deleted(0), Dates());
  EXPECT_EQ(series.Key(1), 1);
  EXPECT_EQ(Keys(), (Dates{500, 500, 600}));
}

// As many keys as series, but two of them of one series.
TEST_F(LinksTest, ASeriesTakesOneKeyOnly) {
  AddSeries("tea", 1, 3);
  AddSeries("walk", 1, 2);
  AddItems("tea", {1, 2}, 500);
  AddItems("tea", {3}, 501);
  LinkOlderFile(occurrences, series);
  EXPECT_EQ(Keys(), (Dates{500, 500, 500}));
  EXPECT_EQ(Deleted(0), Dates());
}

TEST_F(LinksTest, NoItemKeepsAKeyOfZero) {
  platform.clock.now = 0x12345678;
  AddSeries("tea", 1, 3);
  auto first = NewItem("tea", At(1));
  first->header.created = 0;
  occurrences.Append(std::move(first));
  AddItems("tea", {2, 3}, 600);
  AddItems("stray", {2}, 700);
  LinkOlderFile(occurrences, series);
  EXPECT_EQ(Keys(), (Dates{0x56780001, 0x56780001, 0x56780001, 700}));
  EXPECT_EQ(Deleted(0), Dates());
}

TEST_F(LinksTest, AKeyThatIsTakenGivesWayToANewOne) {
  platform.clock.now = 0x12345678;
  AddSeries("tea", 1, 2);
  AddSeries("walk", 1, 2);
  AddItems("tea", {1, 2}, 500);
  AddItems("walk", {1, 2}, 500);
  LinkOlderFile(occurrences, series);
  EXPECT_EQ(series.Key(0), 500);
  EXPECT_EQ(series.Key(1), 0x56780001) << "the time, and a count";
  EXPECT_EQ(Keys(), (Dates{500, 500, 0x56780001, 0x56780001}));
}

// The new key of "walk" is that of "tea": each item goes to the next of the two from the series
// that was found last.
TEST_F(LinksTest, OfTwoSeriesWithOneKeyTheNextCounts) {
  platform.clock.now = 0x12345678;
  AddSeries("tea", 1, 2);
  AddSeries("lunch", 1, 2);
  AddSeries("walk", 1, 3);
  AddItems("tea", {1}, 0x56780001);
  AddItems("lunch", {1, 2}, 700);
  AddItems("walk", {3}, 0x56780001);
  LinkOlderFile(occurrences, series);
  EXPECT_EQ(series.Key(0), series.Key(2));
  EXPECT_EQ(Deleted(0), Dates{2});
  EXPECT_EQ(Deleted(1), Dates());
  EXPECT_EQ(Deleted(2), (Dates{1, 2}));
}

// Its key was 0 until then, as that of the stray item.
TEST_F(LinksTest, AStrayItemOfKeyZeroTakesNoDatesFromASeries) {
  AddSeries("gone", 1, 2);
  auto stray = NewItem("stray", At(1));
  stray->header.created = 0;
  occurrences.Append(std::move(stray));
  LinkOlderFile(occurrences, series);
  EXPECT_EQ(series.Key(0), 1);
  EXPECT_EQ(Days(0), (Dates{1, 2}));
}

TEST_F(LinksTest, ASeriesWithoutItemsGetsAKeyAndAllItsDates) {
  AddSeries("tea", 1, 3);
  AddSeries("gone", 1, 2);
  AddSeries("gone too", 1, 2);
  AddItems("tea", {2}, 500);
  AddItems("stray", {2}, 600);
  LinkOlderFile(occurrences, series);
  EXPECT_EQ(Deleted(0), (Dates{1, 3}));
  EXPECT_EQ(Days(0), Dates{2});
  EXPECT_EQ(series.Key(1), 1);
  EXPECT_EQ(series.Key(2), 2);
  EXPECT_EQ(Days(1), (Dates{1, 2}));
  EXPECT_TRUE(series.Item(1).Exceptions().empty());
  EXPECT_TRUE(series.Item(1).linked);
  EXPECT_EQ(Keys(), (Dates{500, 600})) << "what fits nothing stays";
}

// Items on days that the rule doesn't know, before, between and behind its own.
TEST_F(LinksTest, MissingDatesAreFoundBetweenStrangeOnes) {
  AddSeries("tea", 1, 7);
  series.Item(0).rule.interval = 2;  // 1, 3, 5, 7
  AddItems("tea", {7, 4, 2, 3}, 500);
  LinkOlderFile(occurrences, series);
  EXPECT_EQ(Deleted(0), (Dates{1, 5}));
  EXPECT_EQ(Days(0), (Dates{3, 7}));
}

// Saturdays and Sundays of the first two weeks: the organiser's walk would stop at the Sunday.
TEST_F(LinksTest, MissingDatesAreTakenOutOfAListThatDoesNotAscend) {
  AddSeries("tea", 1, 31);
  WMRecurrenceRule& rule = series.Item(0).rule;
  rule.patternKind = calendar::kMonthlyByWeekday;
  rule.weekMask = 0x03;
  rule.weekdayMask = 0x41;  // 2, 1, 9, 8
  AddItems("tea", {2}, 500);
  LinkOlderFile(occurrences, series);
  EXPECT_EQ(Deleted(0), (Dates{1, 8, 9}));
  EXPECT_EQ(Days(0), Dates{2});
}

TEST_F(LinksTest, TextsTimesAndTheRangeMustFit) {
  AddSeries("tea", 2, 2);
  AddItems("tea", {1, 4}, 500);
  AddItems("Tea", {2}, 501);
  auto late = NewItem("tea", At(2) + kSecondsPerMinute, 502);
  occurrences.Append(std::move(late));
  auto noted = NewItem("tea", At(2), 503);
  noted->detail.SetNotes("n");
  occurrences.Append(std::move(noted));
  auto longer = NewItem("tea", At(2), 504);
  longer->SetEnd(At(2) + 2 * kSecondsPerHour);
  occurrences.Append(std::move(longer));
  LinkOlderFile(occurrences, series);
  EXPECT_EQ(series.Key(0), 1);
  EXPECT_EQ(Keys(), (Dates{500, 500, 501, 502, 503, 504}));
}

// The zone of its items becomes that of the series.
TEST_F(LinksTest, ASeriesIsExpandedInTheZoneOfItsItems) {
  AddSeries("tea", 1, 3);
  AddItems("tea", {1, 3}, 500);
  for (std::size_t i = 0; i < 2; ++i) {
    occurrences.Change(i, [](WMEventItem& item) { item.header.zone = 4; });
  }
  // Ten o'clock UTC by the clocks of Calcutta.
  series.Item(0).detail.SetStartTime(15, 30);
  series.Item(0).detail.SetEndTime(16, 30);
  LinkOlderFile(occurrences, series);
  EXPECT_EQ(series.Item(0).zone, 4);
  EXPECT_EQ(series.Key(0), 500);
  EXPECT_EQ(Deleted(0), Dates{2});
  EXPECT_EQ(WorkingZoneId(), HomeZoneId());
}

}  // namespace
}  // namespace pw::test
