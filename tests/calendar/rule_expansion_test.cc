#include "calendar/rule_expansion.h"

#include <libical/ical.h>

#include <algorithm>
#include <limits>
#include <random>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "tests/support/zone_files.h"
#include "timeplace/zones.h"

namespace {

using Dates = std::vector<std::int32_t>;
using pw::test::PutZoneFiles;
using pw::test::SomeCities;

constexpr std::int32_t kMost = std::numeric_limits<std::int32_t>::max();
constexpr std::int32_t kLeast = std::numeric_limits<std::int32_t>::min();

std::int32_t Local(int year, int month, int day, int hour = 9, int minute = 30) {
  PWDateTimeStamp stamp{static_cast<std::uint16_t>(year),  static_cast<std::uint8_t>(month),
                        static_cast<std::uint8_t>(day),    static_cast<std::uint8_t>(hour),
                        static_cast<std::uint8_t>(minute), 0};
  return LocalStampToSeconds(stamp);
}

Dates Expand(const WMRecurrenceRule& rule) {
  Dates dates;
  EXPECT_TRUE(ExpandRule(rule, dates));
  return dates;
}

// As "5-30 9:30".
std::string Shown(const Dates& dates) {
  std::string shown;
  for (const std::int32_t date : dates) {
    const WMBrokenTime local = SecondsToLocal(date);
    shown += std::to_string(local.mon + 1) + "-" + std::to_string(local.mday) + " " +
             std::to_string(local.hour) + ":" + std::to_string(local.min) + " ";
  }
  return shown;
}

class RuleExpansionTest : public testing::Test {
 protected:
  void LiveIn(const std::string& city) {
    PutZoneFiles(platform, SomeCities(), city);
    ASSERT_TRUE(LoadHomeZone());
  }

  pw::TestPlatform platform;
};

// A rule, and the same for the other expander.
struct Pair {
  const char* text;
  WMRecurrenceRule rule;
  int firstMonth = 1, firstDay = 3;  // of 1990, a Wednesday
  int lastMonth = 12, lastDay = 31;  // of 2009
};

constexpr std::uint16_t kByWeekday = pw::calendar::kMonthlyByWeekday;
constexpr std::uint16_t kByDate = pw::calendar::kMonthlyByDate;
constexpr std::uint16_t kWeekly = pw::calendar::kWeekly;
constexpr std::uint16_t kDaily = pw::calendar::kDaily;
constexpr std::uint32_t kLast = pw::calendar::kLastDayOfMonth;

WMRecurrenceRule Rule(std::uint16_t kind, std::int16_t interval, std::uint8_t weeks,
                      std::uint32_t days, std::uint8_t weekdays) {
  return {.patternKind = kind,
          .interval = interval,
          .weekMask = weeks,
          .dayMask = days,
          .weekdayMask = weekdays};
}

// The moments that libical gives for the range of the pair, in a zone so far east.
Dates Independent(const Pair& pair, std::int32_t east, std::int32_t first, std::int32_t last) {
  const icaltimetype start = icaltime_from_timet_with_zone(first + east, 0, nullptr);
  icalrecurrencetype recurrence = icalrecurrencetype_from_string(pair.text);
  icalrecur_iterator* iterator = icalrecur_iterator_new(recurrence, start);
  Dates dates;
  for (auto next = icalrecur_iterator_next(iterator); !icaltime_is_null_time(next);
       next = icalrecur_iterator_next(iterator)) {
    const std::int64_t date = icaltime_as_timet(next) - east;
    if (date > last) break;
    dates.push_back(static_cast<std::int32_t>(date));
  }
  icalrecur_iterator_free(iterator);
  return dates;
}

TEST_F(RuleExpansionTest, GivesWhatAnotherExpanderGivesOverTwentyYears) {
  LiveIn("Calcutta");
  constexpr std::int32_t kEast = (5 * 60 + 30) * 60;
  const Pair pairs[] = {
      {"FREQ=DAILY", Rule(kDaily, 1, 0, 0, 0)},
      {"FREQ=DAILY;INTERVAL=3", Rule(kDaily, 3, 0, 0, 0)},
      {"FREQ=DAILY;INTERVAL=366", Rule(kDaily, 366, 0, 0, 0), 2, 28, 3, 1},
      {"FREQ=WEEKLY;BYDAY=WE;WKST=WE", Rule(kWeekly, 1, 0, 0, 0x08)},
      {"FREQ=WEEKLY;BYDAY=SU,MO,FR,SA;WKST=WE", Rule(kWeekly, 1, 0, 0, 0x63), 1, 3, 7, 14},
      {"FREQ=WEEKLY;INTERVAL=2;BYDAY=MO,WE;WKST=WE", Rule(kWeekly, 2, 0, 0, 0x0A)},
      {"FREQ=WEEKLY;INTERVAL=52;BYDAY=TU,SA;WKST=SA", Rule(kWeekly, 52, 0, 0, 0x44), 1, 6},
      {"FREQ=MONTHLY;BYMONTHDAY=3", Rule(kByDate, 1, 0, 1U << 2, 0)},
      {"FREQ=MONTHLY;BYMONTHDAY=1,15,30", Rule(kByDate, 1, 0, 0x20004001, 0), 1, 15, 5, 20},
      {"FREQ=MONTHLY;BYMONTHDAY=31", Rule(kByDate, 1, 0, 1U << 30, 0), 1, 31},
      {"FREQ=MONTHLY;BYMONTHDAY=-1", Rule(kByDate, 1, 0, kLast, 0), 1, 31},
      {"FREQ=MONTHLY;INTERVAL=5;BYMONTHDAY=29", Rule(kByDate, 5, 0, 1U << 28, 0), 1, 29, 6, 1},
      {"FREQ=YEARLY;BYMONTH=2;BYMONTHDAY=-1", Rule(kByDate, 12, 0, kLast, 0), 2, 28},
      {"FREQ=MONTHLY;INTERVAL=7;BYDAY=1WE", Rule(kByWeekday, 7, 1, 0, 0x08)},
      {"FREQ=MONTHLY;BYDAY=2SU", Rule(kByWeekday, 1, 2, 0, 0x01), 1, 14, 4, 13},
      {"FREQ=MONTHLY;BYDAY=3MO", Rule(kByWeekday, 1, 4, 0, 0x02), 1, 15, 2, 20},
      {"FREQ=MONTHLY;BYDAY=4SA", Rule(kByWeekday, 1, 8, 0, 0x40), 1, 27},
      {"FREQ=MONTHLY;BYDAY=-1FR", Rule(kByWeekday, 1, 16, 0, 0x20), 1, 26},
      {"FREQ=YEARLY;BYMONTH=1;BYDAY=-1TU", Rule(kByWeekday, 12, 16, 0, 0x04), 1, 30},
  };
  for (const Pair& pair : pairs) {
    WMRecurrenceRule rule = pair.rule;
    rule.firstDay = Local(1990, pair.firstMonth, pair.firstDay);
    rule.lastDay = Local(2009, pair.lastMonth, pair.lastDay);
    const Dates expected = Independent(pair, kEast, rule.firstDay, rule.lastDay);
    EXPECT_GE(expected.size(), 19U) << pair.text;
    EXPECT_EQ(Expand(rule), expected) << pair.text;
  }
}

TEST_F(RuleExpansionTest, EndsWithItsRange) {
  LiveIn("Lima");
  const auto on = [](int month, int day, int hour = 9, int minute = 30) {
    return Local(1998, month, day, hour, minute);
  };
  const WMRecurrenceRule fifthFriday = Rule(kByWeekday, 1, 0x10, 0, 0x20);
  const struct {
    const char* what;
    WMRecurrenceRule rule;
    std::int32_t first, last;
    const char* shown;
  } cases[] = {
      {"daily to the last date, at any hour", Rule(kDaily, 1, 0, 0, 0), on(5, 1), on(5, 3, 0, 0),
       "5-1 9:30 5-2 9:30 5-3 9:30 "},
      {"weekly too", Rule(kWeekly, 1, 0, 0, 0x21), on(5, 1), on(5, 8, 0, 0),
       "5-1 9:30 5-3 9:30 5-8 9:30 "},
      {"also of one day", Rule(kWeekly, 1, 0, 0, 0x20), on(5, 1), on(5, 1, 8), "5-1 9:30 "},
      {"monthly to the last moment", Rule(kByDate, 1, 0, 0x18000001, 0), on(4, 29),
       on(5, 28, 9, 29), "4-29 9:30 5-1 9:30 "},
      {"never before", Rule(kByWeekday, 1, 3, 0, 0x20), on(5, 8), on(5, 8), "5-8 9:30 "},
      {"nothing within", Rule(kByDate, 1, 0, 0x40000000, 0), on(6, 1), on(6, 30), ""},
      {"the fifth is the fourth where there is none", fifthFriday, on(5, 1), on(7, 31),
       "5-29 9:30 6-26 9:30 7-31 9:30 "},
      {"or the range hasn't got it", fifthFriday, on(5, 1), on(5, 29, 9, 29), "5-22 9:30 "},
      {"which comes once", Rule(kByWeekday, 1, 0x18, 0, 0x20), on(5, 1), on(6, 30),
       "5-22 9:30 5-29 9:30 6-26 9:30 "},
      {"week by week", Rule(kByWeekday, 1, 3, 0, 0x41), on(5, 1), on(5, 31),
       "5-3 9:30 5-2 9:30 5-10 9:30 5-9 9:30 "},
      {"the last day and by its number", Rule(kByDate, 1, 0, 0xA0000000, 0), on(5, 1), on(6, 30),
       "5-30 9:30 5-31 9:30 6-30 9:30 "},
  };
  for (const auto& each : cases) {
    WMRecurrenceRule rule = each.rule;
    rule.firstDay = each.first;
    rule.lastDay = each.last;
    EXPECT_EQ(Shown(Expand(rule)), each.shown) << each.what;
  }
}

TEST_F(RuleExpansionTest, SomeRulesHaveNoDates) {
  LiveIn("Lima");
  const std::int16_t most[] = {0, 12, 366, 52, 366, 0};
  for (std::uint16_t kind = 0; kind <= 5; ++kind) {
    WMRecurrenceRule rule = Rule(kind, 1, 0x1F, 0x7FFFFFFF, 0x7F);
    rule.firstDay = Local(1998, 5, 1);
    rule.lastDay = Local(1998, 5, 30);
    Dates dates;
    for (const int interval : {-32768, -1, 0, most[kind] + 1, 32767}) {
      rule.interval = static_cast<std::int16_t>(interval);
      EXPECT_FALSE(ExpandRule(rule, dates)) << kind << " " << interval;
    }
    rule.interval = most[kind];
    std::swap(rule.firstDay, rule.lastDay);
    EXPECT_FALSE(ExpandRule(rule, dates)) << kind;
    EXPECT_TRUE(dates.empty());
    std::swap(rule.firstDay, rule.lastDay);
    EXPECT_EQ(ExpandRule(rule, dates), most[kind] != 0) << kind;
    EXPECT_EQ(dates.empty(), most[kind] == 0);
  }
}

// A moment more than 32 bits of seconds has wrapped around.
TEST_F(RuleExpansionTest, NoRuleGoesOnBehindTheLastMoment) {
  for (const char* city : {"Lima", "Sydney"}) {
    LiveIn(city);
    for (std::uint16_t kind = 1; kind <= 4; ++kind) {
      for (const std::int16_t interval : {1, 12}) {
        WMRecurrenceRule rule = Rule(kind, interval, 0x1F, 0xFFFFFFFF, 0x7F);
        rule.firstDay = Local(2037, 11, 1);
        rule.lastDay = kMost;
        const Dates dates = Expand(rule);
        EXPECT_GE(dates.size(), 2U) << kind;
        EXPECT_LE(dates.size(), 80U) << kind;
        EXPECT_GE(*std::min_element(dates.begin(), dates.end()), rule.firstDay) << kind;
        rule.firstDay = kLeast;
        const Dates all = Expand(rule);
        EXPECT_LE(all.size(), 60000U) << kind;
        // Weekdays of a month come week by week.
        const std::int64_t mostBack = kind == kByWeekday ? 31 * kSecondsPerDay : 0;
        const auto hasGoneBack = [&](std::int64_t date, std::int64_t before) {
          return before - date > mostBack;
        };
        EXPECT_TRUE(std::is_sorted(all.begin(), all.end(), hasGoneBack)) << city << kind;
      }
    }
  }
}

TEST_F(RuleExpansionTest, KeepsTheHourThatTheClocksShow) {
  for (const char* city : {"New York, NY", "Sydney"}) {
    LiveIn(city);
    for (std::uint16_t kind = 1; kind <= 4; ++kind) {
      WMRecurrenceRule rule = Rule(kind, 1, 0x0F, 0x0FFFFFFF, 0x7F);
      rule.firstDay = Local(1998, 1, 1);
      rule.lastDay = Local(1999, 12, 31);
      Dates dates = Expand(rule);
      std::sort(dates.begin(), dates.end());
      int shorter = 0;
      int longer = 0;
      for (std::size_t i = 0; i < dates.size(); ++i) {
        const WMBrokenTime local = SecondsToLocal(dates[i]);
        ASSERT_EQ(local.hour * 60 + local.min, 9 * 60 + 30) << city << kind << " " << i;
        if (i == 0) continue;
        const std::int32_t ofDay = (dates[i] - dates[i - 1]) % kSecondsPerDay;
        shorter += ofDay == 23 * kSecondsPerHour;
        longer += ofDay == kSecondsPerHour;
      }
      EXPECT_EQ(shorter, 2) << city << kind;
      EXPECT_EQ(longer, 2) << city << kind;
    }
  }
}

// On 5 April 1998 in New York there is no half past two.
TEST_F(RuleExpansionTest, FromTheHourThatIsSkippedADailySeriesGoesOnLater) {
  LiveIn("New York, NY");
  WMRecurrenceRule rule = Rule(kDaily, 1, 0, 0, 0);
  rule.firstDay = Local(1998, 4, 4, 2);
  rule.lastDay = Local(1998, 4, 6);
  EXPECT_EQ(Shown(Expand(rule)), "4-4 2:30 4-5 3:30 4-6 3:30 ");
  rule = Rule(kWeekly, 1, 0, 0, 0x43);
  rule.firstDay = Local(1998, 4, 4, 2);
  rule.lastDay = Local(1998, 4, 6);
  EXPECT_EQ(Shown(Expand(rule)), "4-4 2:30 4-5 3:30 4-6 2:30 ");
}

// On the first of April there is no half past two, so that the last day of March, counted back from
// it, isn't the thirty-first as counted on from the first of March.
TEST_F(RuleExpansionTest, TheLastDayOfAMonthIsTheOneBeforeTheNext) {
  LiveIn("Nowhere");
  WMRecurrenceRule rule = Rule(kByDate, 1, 0, kLast, 0);
  rule.firstDay = Local(1998, 2, 1, 2);
  rule.lastDay = Local(1998, 4, 30);
  EXPECT_EQ(Shown(Expand(rule)), "2-28 2:30 4-30 3:30 ");
  rule.dayMask = kLast | 1U << 30;
  EXPECT_EQ(Shown(Expand(rule)), "2-28 2:30 3-31 2:30 4-30 3:30 ");
}

// By the walk that it stands for.
TEST_F(RuleExpansionTest, TakesOutTheDatesThatAWalkWouldFind) {
  LiveIn("Sydney");
  std::mt19937 random(7);
  for (int round = 0; round < 200; ++round) {
    // Days apart within, a month and more beyond, in order or not.
    std::uniform_int_distribution<std::int32_t> any(0, round % 2 == 0 ? 20 : 400);
    Dates occurrences(1 + random() % 60);
    Dates dates(random() % 40);
    for (Dates* list : {&occurrences, &dates}) {
      for (std::int32_t& date : *list) date = any(random) * kSecondsPerDay / 2;
    }
    if (round % 3 != 0) std::sort(occurrences.begin(), occurrences.end());
    Dates expected = occurrences;
    for (const std::int32_t date : dates) {
      const auto at = std::find_if(expected.begin(), expected.end(), [&](std::int32_t each) {
        return CompareLocalDates(date, each) <= 0;
      });
      if (at != expected.end() && CompareLocalDates(date, *at) == 0) expected.erase(at);
    }
    pw::calendar::TakeOutDates(occurrences, dates);
    ASSERT_EQ(occurrences, expected) << round;
  }
}

}  // namespace
