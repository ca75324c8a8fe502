#include "host/series_events.h"

#include <algorithm>
#include <chrono>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include <gtest/gtest.h>

#include "host/calendar_zones.h"
#include "host/formats/icalendar.h"
#include "host/formats/vtimezone.h"
#include "host/rule_of_pattern.h"
#include "tests/support/ical_reading.h"
#include "tests/support/pattern_numbers.h"
#include "tests/support/zone_files.h"
#include "timeplace/date.h"
#include "timeplace/zone_rule.h"

namespace pw {
namespace {

using std::chrono::sys_days;

PWRecurrancePattern& Recur(PWRecord& record, ERecurranceType type,
                           const test::Numbers& numbers = {}) {
  PWEventRecord event(&record);
  event.Recurring(true, type);
  test::Fill(*event.RecurrancePattern(), numbers);
  return *event.RecurrancePattern();
}

TEST(RuleOfPatternTest, InWordsAndForPrograms) {
  const struct {
    ERecurranceType type;
    test::Numbers numbers;
    const char* words;
    const char* value;
  } cases[] = {
      {kRecurranceDaily, {3}, "every 3 days", "FREQ=DAILY;INTERVAL=3"},
      // Monday is 2, Saturday 0.
      {kRecurranceWeekly, {1, 5}, "every week on Mon, Sat", "FREQ=WEEKLY;WKST=WE;BYDAY=MO,SA"},
      {kRecurranceMonthlyByDate,
       {2, 0x80000001},
       "every 2 months on 1, last day",
       "FREQ=MONTHLY;INTERVAL=2;BYMONTHDAY=1,-1"},
      {kRecurranceMonthlyByDay, {1, 1, 6}, "every month on the 2nd Fri", "FREQ=MONTHLY;BYDAY=2FR"},
      {kRecurranceYearlyByDate,
       {11, 23},
       "every year on 24 Dec",
       "FREQ=YEARLY;BYMONTH=12;BYMONTHDAY=24"},
      {kRecurranceYearlyByDay,
       {4, 4, 2},
       "every year on the last Mon of May",
       "FREQ=YEARLY;BYMONTH=5;BYDAY=-1MO"},
  };
  const sys_days wednesday = std::chrono::year(1998) / 3 / 4;
  for (const auto& each : cases) {
    PWRecord record;
    PWRecurrancePattern& pattern = Recur(record, each.type);
    EXPECT_FALSE(RuleOfPattern(pattern).has_value() && each.type != kRecurranceYearlyByDate &&
                 each.type != kRecurranceYearlyByDay)
        << each.words << " has no interval yet";
    test::Fill(pattern, each.numbers);
    const auto rule = RuleOfPattern(pattern);
    ASSERT_TRUE(rule) << each.words;
    EXPECT_EQ(RuleInWords(*rule), each.words);
    EXPECT_EQ(RuleValue(*rule, wednesday), each.value);
  }
}

TEST(RuleOfPatternTest, NothingForDaysThatThereAreNot) {
  const std::pair<ERecurranceType, test::Numbers> cases[] = {
      {kRecurranceWeekly, {1}},
      {kRecurranceMonthlyByDate, {1}},
      {kRecurranceMonthlyByDay, {1, 5, 1}},
      {kRecurranceMonthlyByDay, {1, 1, 9}},
      {kRecurranceYearlyByDate, {12, 1}},
      {kRecurranceYearlyByDate, {1, 40}},
      {kRecurranceDaily, {-1}},
      {static_cast<ERecurranceType>(9), {}},
  };
  for (const auto& [type, numbers] : cases) {
    PWRecord record;
    EXPECT_FALSE(RuleOfPattern(Recur(record, type, numbers))) << type;
  }
}

// An hour at noon in New York, every year on 4 March from 1998 to 2004.
class YearlySeriesTest : public testing::Test {
 protected:
  YearlySeriesTest() : pattern(Recur(record, kRecurranceYearlyByDate)) {
    PWEventRecord event(&record);
    event.StartDate(PWDateTimeStamp(1998, 3, 4, 17, 0, 0));
    event.EndDate(PWDateTimeStamp(1998, 3, 4, 18, 0, 0));
    *pattern.YearlyByDate() = {2, 3};
    pattern.EndDate = PWDateTimeStamp(2004, 12, 31, 0, 0, 0);
  }

  static std::int32_t Noon(int year) { return PlainSeconds(year, 3, 4, 17, 0, 0); }

  // An exception on 4 March of that year.
  void Except(int year, bool deleted, std::uint8_t newHour = 0) {
    auto* exception = new PWRecurranceException;
    exception->Date = PWDateTimeStamp(static_cast<std::uint16_t>(year), 3, 4, 0, 0, 0);
    exception->Changes.Bit(PWRecurranceException::kDeleted, deleted);
    if (newHour != 0) {
      exception->StartDate = PWDateTimeStamp(static_cast<std::uint16_t>(year), 3, 4, newHour, 0, 0);
      exception->EndDate = exception->StartDate;
    }
    pattern.AddException(exception);
  }

  static std::vector<Occurrence> Hours(const std::vector<int>& years) {
    std::vector<Occurrence> hours(years.size());
    std::transform(years.begin(), years.end(), hours.begin(), [](int year) {
      return Occurrence{Noon(year), Noon(year) + kSecondsPerHour};
    });
    return hours;
  }
  std::vector<Event> Events(const std::optional<std::vector<Occurrence>>& stored) {
    Event series;
    series.uid = "uid";
    series.subject = "Series";
    return EventsOfSeries(series, PWEventRecord(&record), stored, clock);
  }
  std::vector<Event> Events(const std::vector<int>& years) { return Events(Hours(years)); }

  // The events in a file, and when another program then finds them.
  test::Moments Read(const std::vector<Event>& events) const {
    std::string text;
    BeginCalendar(text);
    AppendVTimezone(text, clock.name, *clock.city);
    for (const Event& event : events) AppendVEvent(text, event, "19980302T120000Z");
    EndCalendar(text);
    return test::UnchangedStarts(test::ParseCalendar(text).get())["Series"];
  }

  static test::Moments Noons(const std::vector<int>& years) {
    test::Moments moments;
    for (const int year : years) moments.insert(Noon(year));
    return moments;
  }

  PWRecord record;
  PWRecurrancePattern& pattern;
  const std::vector<WMCityRecord> cities = test::SomeCities();
  SeriesClock clock{&cities[4], "New York"};
  const std::vector<int> all = {1998, 1999, 2000, 2001, 2002, 2003, 2004};
};

TEST_F(YearlySeriesTest, GoesByARuleOnlyWhereThatGivesWhatIsStored) {
  const auto byRule = Events(all);
  EXPECT_EQ(byRule[0].rule, "FREQ=YEARLY;BYMONTH=3;BYMONTHDAY=4;UNTIL=20050101T045959Z");
  EXPECT_TRUE(byRule[0].dates.empty());
  EXPECT_EQ(Read(byRule), Noons(all));

  const std::vector<int> everySecond = {1998, 2000, 2002, 2004};
  const auto byDates = Events(everySecond);
  EXPECT_EQ(byDates[0].rule, "");
  EXPECT_EQ(byDates[0].start.text, "19980304T120000");
  EXPECT_EQ(byDates[0].dates.size(), 3U);
  EXPECT_EQ(Read(byDates), Noons(everySecond));

  const auto without = Events(std::vector<int>());
  EXPECT_EQ(without[0].deleted, std::vector<CalendarTime>{without[0].start});
  EXPECT_TRUE(Read(without).empty());
}

TEST_F(YearlySeriesTest, OneDateMoreStandsBesideItsRuleAndNoTwo) {
  std::vector<int> years = {1998, 1999, 2000, 2001, 2002, 2003, 2004, 2005};
  const auto one = Events(years);
  EXPECT_EQ(one[0].dates, std::vector<CalendarTime>{clock.At(Noon(2005))});
  EXPECT_NE(one[0].rule, "");
  EXPECT_EQ(Read(one), Noons(years));
  years.push_back(2006);
  const auto two = Events(years);
  EXPECT_EQ(two[0].rule, "");
  EXPECT_EQ(Read(two), Noons(years));
}

TEST_F(YearlySeriesTest, ExceptionsAreLeftOutOrStandByThemselves) {
  Except(1998, true);
  Except(2000, false, 20);
  Except(2000, false, 21);
  Except(2001, false);  // its occurrence isn't there
  const std::vector<int> years = {1999, 2002, 2003, 2004};
  auto events = Events(years);
  ASSERT_EQ(events.size(), 3U);
  EXPECT_EQ(events[0].deleted,
            (std::vector<CalendarTime>{clock.At(Noon(1998)), clock.At(Noon(2001))}));
  EXPECT_EQ(events[1].replaced, clock.At(Noon(2000)));
  EXPECT_EQ(events[1].start.text, "20000304T150000");
  EXPECT_EQ(events[1].end, std::nullopt) << "it has no length";
  EXPECT_EQ(events[2].replaced, std::nullopt);
  EXPECT_NE(events[2].uid, events[0].uid);
  events.pop_back();
  EXPECT_EQ(Read(events), Noons(years));
}

TEST_F(YearlySeriesTest, WithoutOccurrencesInTheFileItGoesByItsPattern) {
  Except(2000, true);
  const auto events = Events(std::nullopt);
  EXPECT_NE(events[0].rule, "");
  EXPECT_EQ(events[0].end->text, "19980304T130000");
  EXPECT_EQ(Read(events), Noons({1998, 1999, 2001, 2002, 2003, 2004}));
}

// As one that ends by the clock is where the clocks change within it.
TEST_F(YearlySeriesTest, OneOfAnotherLengthStandsByItself) {
  for (const std::size_t odd : {0U, 2U}) {
    auto hours = Hours(all);
    hours[odd].end += kSecondsPerHour;
    const auto events = Events(hours);
    ASSERT_EQ(events.size(), 2U);
    EXPECT_EQ(events[0].end->text, "19980304T130000") << "as most of them";
    EXPECT_EQ(events[1].replaced, clock.At(hours[odd].start));
    EXPECT_EQ(events[1].start, clock.At(hours[odd].start));
    EXPECT_EQ(events[1].end, clock.At(hours[odd].end));
    EXPECT_EQ(events[1].rule, "");
  }
  auto inverted = Hours(all);
  for (Occurrence& each : inverted) each.end -= 2 * kSecondsPerHour;
  inverted[3].end += kSecondsPerMinute;
  EXPECT_EQ(Events(inverted).size(), 1U) << "what ends before it starts has no length";
}

TEST_F(YearlySeriesTest, AnOccurrenceMayStandOnADateThatTheRuleHasNotGot) {
  Except(2000, false, 20);
  pattern.Exceptions().At(0)->Date.day = 5;
  const auto events = Events(all);
  EXPECT_NE(events[0].rule, "");
  EXPECT_EQ(events[0].dates, std::vector<CalendarTime>{clock.At(Noon(2000) + kSecondsPerDay)});
  EXPECT_EQ(events[1].replaced, events[0].dates[0]);
  EXPECT_EQ(Read(events), Noons(all));
}

// Its dates are still those of the city.
TEST_F(YearlySeriesTest, OfClocksThatTheFileCannotTellTheDatesAreInUtc) {
  clock.name.clear();
  for (PWDateTimeStamp* stamp :
       {&PWEventRecord(&record).StartDate(), &PWEventRecord(&record).EndDate()}) {
    stamp->day = 5;
    stamp->hour = stamp->hour == 17 ? 2 : 3;  // 21:00 on the 4th
  }
  Except(2000, false, 20);
  std::vector<Occurrence> evenings = Hours(all);
  for (Occurrence& each : evenings) {
    each.start += 9 * kSecondsPerHour;
    each.end += 9 * kSecondsPerHour;
  }
  evenings.erase(evenings.begin() + 2);
  const auto events = Events(evenings);
  EXPECT_EQ(events[0].rule, "");
  EXPECT_EQ(events[0].start.text, "19980305T020000Z");
  EXPECT_EQ(events[1].replaced->text, "20000305T020000Z");
  EXPECT_EQ(events[0].dates.size(), 6U);
}

// Whether the city's clocks show the same an hour before or behind.
bool OccursTwice(const WMCityRecord& city, std::int32_t moment) {
  const std::int32_t local = UtcToLocal(city, moment).seconds;
  return UtcToLocal(city, moment - kSecondsPerHour).seconds == local ||
         UtcToLocal(city, moment + kSecondsPerHour).seconds == local;
}

TEST(VtimezoneTest, AnotherProgramFindsTheCitysTime) {
  for (const WMCityRecord& city : test::SomeCities()) {
    ASSERT_TRUE(CanBeTold(city)) << city.Name();
    CalendarZones zones;
    const SeriesClock clock{&city, zones.NameOf(city)};
    Event event;
    event.uid = "uid";
    event.subject = "Series";
    event.start = clock.At(PlainSeconds(1999, 1, 1, 0, 0, 0));
    test::Moments moments = {PlainSeconds(1999, 1, 1, 0, 0, 0)};
    for (std::int32_t hour = 1; hour < 24 * 366; ++hour) {
      const std::int32_t moment = PlainSeconds(1999, 1, 1, 0, 0, 0) + hour * kSecondsPerHour;
      if (OccursTwice(city, moment)) continue;
      event.dates.push_back(clock.At(moment));
      moments.insert(moment);
    }
    std::string text;
    BeginCalendar(text);
    zones.Append(text);
    AppendVEvent(text, event, "19980302T120000Z");
    EndCalendar(text);
    const test::Moments found = test::UnchangedStarts(test::ParseCalendar(text).get())["Series"];
    EXPECT_EQ(found, moments) << city.Name();
  }
}

TEST(VtimezoneTest, RulesThatNameNoDayAreNotTold) {
  WMCityRecord city = test::SomeCities()[0];
  city.dstStart.week = -1;
  EXPECT_FALSE(CanBeTold(city));
  city = test::SomeCities()[0];
  city.dstEnd.hour = 13;
  city.dstEnd.pm = 1;
  EXPECT_FALSE(CanBeTold(city));
  city = test::SomeCities()[5];
  city.dstEnd.month = 1;
  EXPECT_FALSE(CanBeTold(city)) << "the 31st of February";
  city.dstMode = 3;
  EXPECT_FALSE(CanBeTold(city));
}

TEST(CalendarZonesTest, EachCityHasANameOfItsOwn) {
  const WMCityRecord a = test::City("New York, NY", "USA", 1, -500);
  const WMCityRecord b = test::City("New York; NY", "USA", 2, -400);
  CalendarZones zones;
  EXPECT_EQ(zones.NameOf(a), "New York NY");
  EXPECT_EQ(zones.NameOf(b), "New York NY 2");
  EXPECT_EQ(zones.NameOf(a), "New York NY");
}

}  // namespace
}  // namespace pw
