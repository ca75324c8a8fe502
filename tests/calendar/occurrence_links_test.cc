#include "calendar/occurrence_links.h"

#include <iterator>
#include <sstream>

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
      item->header.created = created;  // which no setter makes 0
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

  void Put(const std::string& someSeries, const std::string& someItems) {
    std::istringstream in(someSeries);
    for (std::string each; std::getline(in, each, ',');) {
      std::istringstream words(each);
      std::string subject;
      std::int32_t day = 0;
      std::int32_t days = 0;
      words >> subject >> day >> days;
      AddSeries(subject, day, days);
    }
    in = std::istringstream(someItems);
    for (std::string each; std::getline(in, each, ',');) {
      std::istringstream words(each);
      std::string subject;
      char at = 0;
      std::int32_t key = 0;
      words >> subject >> at >> key;
      AddItems(subject, {std::istream_iterator<std::int32_t>(words), {}}, key);
    }
  }
  std::string Linked() {
    std::string shown;
    for (std::size_t i = 0; i < series.Count(); ++i) {
      EXPECT_TRUE(series.Item(i).linked);
      shown += std::to_string(series.Key(i)) + ":";
      for (const std::int32_t day : Days(i)) shown += " " + std::to_string(day);
      for (const std::int32_t day : Deleted(i)) shown += " -" + std::to_string(day);
      shown += ";";
      shown += i + 1 == series.Count() ? "" : " ";
    }
    for (const std::int32_t key : Keys()) shown += " " + std::to_string(key);
    return shown;
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

// Series are given as "subject first-day number-of-days", items as "subject @key days"; what comes
// of them is "key: days -deleted" for each series, and then the keys of the items.
TEST_F(LinksTest, ItemsGoToTheirSeries) {
  const struct {
    const char* what;
    const char* series;
    const char* items;
    const char* linked;
  } cases[] = {
      {"keys of a few seconds are one where there are too many: an organiser writes that long",
       "tea 1 6", "tea @1019 1 2, tea @1000 3, tea @1038 4 5 6",
       "1019: 1 2 3 4 5 6; 1019 1019 1019 1019 1019 1019"},
      {"nineteen seconds are few; behind its range an item is of a series by its key alone",
       "tea 1 2", "tea @1000 1 2, tea @1019 9", "1000: 1 2; 1000 1000 1000"},
      {"twenty seconds are not", "tea 1 2", "tea @1000 1 2, tea @1020 9",
       "1000: 1 2; 1000 1000 1020"},
      {"then each is linked by itself, and other texts stay apart", "tea 1 4",
       "tea @1000 1 2, tea @1020 3 4, walk @1001 1", "1000: 1 2 3 4; 1000 1000 1000 1000 1001"},
      {"keys that look alike stay where there are not too many", "tea 1 2, tea 11 2",
       "tea @500 1 2, tea @501 11 12", "500: 1 2; 501: 11 12; 500 500 501 501"},
      {"one key fits no series: what was given before is taken back", "tea 1 2, walk 1 2",
       "tea @500 1 2, stray @600 1", "500: 1 2; 1: 1 2; 500 500 600"},
      {"as many keys as series, but two of them of one series", "tea 1 3, walk 1 2",
       "tea @500 1 2, tea @501 3", "500: 1 2 3; 1: 1 2; 500 500 500"},
      {"no item keeps a key of zero", "tea 1 3", "tea @0 1, tea @600 2 3, stray @700 2",
       "1450704897: 1 2 3; 1450704897 1450704897 1450704897 700"},
      {"a key that is taken gives way to a new one, the time and a count", "tea 1 2, walk 1 2",
       "tea @500 1 2, walk @500 1 2", "500: 1 2; 1450704897: 1 2; 500 500 1450704897 1450704897"},
      {"the new key of walk is that of tea: each item goes to the next of the two",
       "tea 1 2, lunch 1 2, walk 1 3", "tea @1450704897 1, lunch @700 1 2, walk @1450704897 3",
       "1450704897: 1 -2; 700: 1 2; 1450704897: 3 -1 -2; 1450704897 700 700 1450704897"},
      {"a stray item of key 0 takes no dates from a series, though its key was 0 until then",
       "gone 1 2", "stray @0 1", "1: 1 2; 0"},
      {"a series without items gets a key and all its dates, and what fits nothing stays",
       "tea 1 3, gone 1 2, late 1 2", "tea @500 2, stray @600 2",
       "500: 2 -1 -3; 1: 1 2; 2: 1 2; 500 600"},
  };
  for (const auto& each : cases) {
    pw::ResetProcessWideState();
    LoadHomeZone();
    platform.clock.now = 0x12345678;
    series.Close();
    occurrences.Clear();
    Put(each.series, each.items);
    LinkOlderFile(occurrences, series);
    EXPECT_EQ(Linked(), each.linked) << each.what;
  }
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
