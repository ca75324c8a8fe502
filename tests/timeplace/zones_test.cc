#include "timeplace/zones.h"

#include <stdlib.h>
#include <time.h>

#include <cstdint>
#include <map>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "tests/support/zone_files.h"
#include "timeplace/zone_rule.h"

namespace {

using pw::test::Change;
using pw::test::City;
using pw::test::PutZoneFiles;
using pw::test::SomeCities;

constexpr std::int32_t kHour = 3600;

// What the machine's own clock makes of a rule, in its own notation.
class Oracle {
 public:
  explicit Oracle(const char* rule) {
    setenv("TZ", rule, 1);
    tzset();
  }
  ~Oracle() {
    unsetenv("TZ");
    tzset();
  }
  Oracle(const Oracle&) = delete;
  Oracle& operator=(const Oracle&) = delete;

  WMBrokenTime Local(std::int32_t utc) const {
    const std::time_t seconds = utc;
    tm broken{};
    localtime_r(&seconds, &broken);
    return {broken.tm_sec,  broken.tm_min,  broken.tm_hour, broken.tm_mday, broken.tm_mon,
            broken.tm_year, broken.tm_wday, broken.tm_yday, broken.tm_isdst};
  }
};

class ZonesTest : public testing::Test {
 protected:
  void Live(const std::string& city) { PutZoneFiles(platform, SomeCities(), city); }

  // The hours around each change of the zone's clocks in some years, and around New Year.
  static std::vector<std::int32_t> HoursThatMatter(const Oracle& oracle) {
    std::vector<std::int32_t> hours;
    for (const std::int32_t year : {1980, 1999, 2000, 2004, 2029}) {
      const std::int32_t first = PlainSeconds(year, 1, 1, 0, 0, 0);
      for (std::int32_t t = first; t < first + 366 * kSecondsPerDay; t += kHour / 2) {
        const bool changes = oracle.Local(t - 4 * kHour).isdst != oracle.Local(t + 4 * kHour).isdst;
        if (changes || t < first + kSecondsPerDay) hours.push_back(t);
      }
    }
    return hours;
  }

  pw::TestPlatform platform;
};

TEST_F(ZonesTest, ClocksGoAsTheRuleHasItBothWays) {
  const struct {
    const char *city, *rule;
  } cases[] = {
      {"New York, NY", "EST5EDT,M4.1.0/2,M10.5.0/2"},
      {"Sydney", "AST-10ADT,M10.5.0/2,M3.5.0/3"},
      {"Adelaide", "AST-9:30ADT,M10.5.0/2,M3.5.0/3"},
      {"Calcutta", "IST-5:30"},
      {"Caracas", "VST4:30"},
      {"Nowhere", "NST-2NDT,J91/2,J304/15"},
  };
  for (const auto& each : cases) {
    ZoneFilesMayHaveChanged();
    Live(each.city);
    ASSERT_TRUE(LoadHomeZone());
    const Oracle oracle(each.rule);
    // What each local time means: the first moment that shows it.
    std::map<std::int32_t, std::int32_t> meanings;
    const std::vector<std::int32_t> hours = HoursThatMatter(oracle);
    for (const std::int32_t utc : hours) {
      const WMBrokenTime shown = SecondsToLocal(utc);
      ASSERT_EQ(shown, oracle.Local(utc)) << each.city << " " << utc;
      WMBrokenTime copy = shown;
      meanings.emplace(NormalSeconds(copy), utc);
    }
    int skipped = 0;
    for (const std::int32_t utc : hours) {
      for (const std::int32_t ahead : {0, kHour}) {
        WMBrokenTime asked = SecondsToLocal(utc);
        const bool daylight = asked.isdst != 0;
        asked.sec += ahead;
        WMBrokenTime given = asked;
        const auto meant = meanings.find(NormalSeconds(given));
        given = asked;
        const std::int32_t seconds = LocalToSeconds(given);
        EXPECT_EQ(given, oracle.Local(seconds)) << each.city << " " << utc;
        if (meant != meanings.end()) {
          EXPECT_EQ(seconds, meant->second) << each.city << " " << utc;
        }
        // Where nothing shows it, standard time had ended an hour ago.
        const bool isSkipped =
            ahead != 0 && !daylight && given.isdst != 0 && seconds == utc + kHour;
        if (!isSkipped) continue;
        ++skipped;
        EXPECT_EQ(NormalSeconds(asked) + kHour, NormalSeconds(given));
      }
    }
    const bool hasRule = std::string(each.rule).find(',') != std::string::npos;
    EXPECT_EQ(skipped, hasRule ? 10 : 0) << each.city << ": two half hours in each of five years";
  }
}

TEST_F(ZonesTest, ASkippedHourMovesForward) {
  Live("New York, NY");
  const std::int32_t moment = PlainSeconds(2000, 4, 2, 7, 30, 0);
  EXPECT_EQ(LocalStampToSeconds({2000, 4, 2, 2, 30, 0}), moment);
  EXPECT_EQ(SecondsToLocalStamp(moment), PWDateTimeStamp(2000, 4, 2, 3, 30, 0));
}

TEST_F(ZonesTest, TheYearChangesToAndFro) {
  Live("Sydney");
  const Oracle oracle("AST-10ADT,M10.5.0/2,M3.5.0/3");
  const std::int32_t newYear = PlainSeconds(2000, 1, 1, 0, 0, 0) - 10 * kHour;
  for (int i = 0; i < 40; ++i) {
    const std::int32_t away = (i % 2 == 0 ? i : -i) * kHour;
    EXPECT_EQ(SecondsToLocal(newYear + away), oracle.Local(newYear + away)) << away;
  }
}

TEST_F(ZonesTest, WithoutCityFileOrCityTimeIsUtcAndFilesAreLeftAlone) {
  const std::int32_t summer = PlainSeconds(2000, 7, 1, 12, 0, 0);
  EXPECT_FALSE(LoadHomeZone());
  EXPECT_EQ(SecondsToLocal(summer).hour, 12);
  Live("Atlantis");
  SYSTEMTIME now;
  LocalNow(now);
  EXPECT_EQ(now.wHour, 12);
  TIME_ZONE_INFORMATION zone;
  EXPECT_FALSE(HomeToTimeZone(zone));
  // Only what opens a source looks again.
  const std::size_t opens = platform.files.Opens();
  EXPECT_EQ(SecondsToLocal(summer).hour, 12);
  EXPECT_EQ(platform.files.Opens(), opens);
  ZoneFilesMayHaveChanged();
  EXPECT_TRUE(LoadHomeZone()) << "a city that isn't known is no failure";
  EXPECT_EQ(SecondsToLocal(summer).hour, 12);
  EXPECT_FALSE(HomeToTimeZone(zone));
  EXPECT_EQ(HomeZoneId(), 0);
  EXPECT_EQ(LocalStampToSeconds({0, 7, 1, 0, 0, 0}), StampToSeconds({0, 7, 1, 0, 0, 0}));

  Live("Lima");
  ZoneFilesMayHaveChanged();
  EXPECT_EQ(SecondsToPlain(summer).hour, 12);
  EXPECT_EQ(HomeZoneId(), 6) << "any conversion loads the zone";
  EXPECT_EQ(SecondsToLocal(summer).hour, 7);
}

TEST_F(ZonesTest, NowIsTheClocksTimeInTheWorkingZone) {
  const struct {
    const char* city;
    std::int32_t utc;
    SYSTEMTIME shown;
  } cases[] = {
      {"New York, NY", PlainSeconds(2000, 7, 1, 2, 30, 15), {2000, 6, 5, 30, 22, 30, 15, 0}},
      {"New York, NY", PlainSeconds(2001, 1, 1, 2, 30, 15), {2000, 12, 0, 31, 21, 30, 15, 0}},
      {"Caracas", PlainSeconds(2000, 7, 1, 2, 0, 0), {2000, 6, 5, 30, 21, 30, 0, 0}},
  };
  for (const auto& each : cases) {
    platform.clock.now = each.utc;
    Live(each.city);
    ASSERT_TRUE(LoadHomeZone());
    SYSTEMTIME now;
    now.wMilliseconds = 7;
    LocalNow(now);
    EXPECT_EQ(now, each.shown) << each.city;
    EXPECT_EQ(UtcNowSeconds(), each.utc);
    EXPECT_EQ(SecondsToStamp(each.utc), StampOf(BrokenTimeOf(each.utc))) << "no zone in it";
  }
}

TEST_F(ZonesTest, OfOneNumberTheFirstCityCounts) {
  auto cities = SomeCities();
  cities.insert(cities.begin(), City("A", "", 6, -400));
  PutZoneFiles(platform, cities, "Lima");
  ASSERT_TRUE(LoadHomeZone());
  const std::int32_t noon = PlainSeconds(2000, 7, 1, 12, 0, 0);
  EXPECT_EQ(SecondsToLocal(noon).hour, 7);
  EXPECT_TRUE(SwitchZone(2, false));
  EXPECT_TRUE(SwitchZone(6, false));
  EXPECT_EQ(SecondsToLocal(noon).hour, 8);
  EXPECT_FALSE(SwitchZone(0, false)) << "the same number: only the record is the home city's again";
  EXPECT_EQ(SecondsToLocal(noon).hour, 8);
  EXPECT_TRUE(SwitchZone(2, false));
  EXPECT_TRUE(SwitchZone(0, false));
  EXPECT_EQ(SecondsToLocal(noon).hour, 7);
}

TEST_F(ZonesTest, TheHomeCityIsFoundThroughTheTreeAndOthersByTheirPlace) {
  Live("Lima");
  std::string file = *platform.files.Get("C:\\Data\\cityinfo.dat");
  file[0] = 0;  // no root
  platform.files.Put("C:\\Data\\cityinfo.dat", file);
  EXPECT_TRUE(LoadHomeZone());
  EXPECT_EQ(HomeZoneId(), 0);
  EXPECT_TRUE(SwitchZone(6, false));
}

TEST_F(ZonesTest, SwitchingTouchesNoFile) {
  Live("New York, NY");
  EXPECT_TRUE(LoadHomeZone());
  EXPECT_TRUE(SwitchZone(2, false));
  const std::size_t opens = platform.files.Opens();
  const int registryOpens = platform.registry.opens;
  const std::int32_t summer = PlainSeconds(2000, 7, 1, 12, 0, 0);
  EXPECT_EQ(SecondsToLocal(summer).hour, 22);
  EXPECT_TRUE(SwitchZone(2, false)) << "it is there already";
  EXPECT_FALSE(SwitchZone(99, false));
  EXPECT_FALSE(SwitchZone(-1, false));
  EXPECT_FALSE(SwitchZone(256 + 4, false));
  EXPECT_EQ(WorkingZoneId(), 2);
  EXPECT_EQ(HomeZoneId(), 1);
  EXPECT_TRUE(SwitchZone(0, false));
  EXPECT_FALSE(SwitchZone(0, false)) << "nothing changes";
  EXPECT_EQ(SecondsToLocal(summer).hour, 8);
  EXPECT_TRUE(SwitchZone(4, true));
  EXPECT_EQ(HomeZoneId(), 4);
  EXPECT_EQ(SecondsToLocal(summer).min, 30);
  EXPECT_EQ(platform.files.Opens(), opens);
  EXPECT_EQ(platform.registry.opens, registryOpens);
}

TEST_F(ZonesTest, TheCityFileIsLookedAtAgainWhenASourceOpens) {
  Live("New York, NY");
  EXPECT_TRUE(LoadHomeZone());
  EXPECT_TRUE(SwitchZone(6, false));
  auto cities = SomeCities();
  cities[3].offset = -400;
  platform.clock.Advance(1);
  platform.files.Put("C:\\Data\\cityinfo.dat", pw::city::EncodeCityFile(cities));
  const std::int32_t noon = PlainSeconds(2000, 7, 1, 12, 0, 0);
  EXPECT_TRUE(SwitchZone(0, false));
  EXPECT_TRUE(SwitchZone(6, false));
  EXPECT_EQ(SecondsToLocal(noon).hour, 7);
  ZoneFilesMayHaveChanged();
  EXPECT_TRUE(SwitchZone(0, false));
  EXPECT_TRUE(SwitchZone(6, false));
  EXPECT_EQ(SecondsToLocal(noon).hour, 8);
}

TEST_F(ZonesTest, TheZoneInTheEnginesForm) {
  const struct {
    WMCityRecord city;
    std::int32_t bias;
    SYSTEMTIME standard, daylight;
  } cases[] = {
      {City("a", "", 1, 530), -330, {}, {}},
      // Minutes west and less than an hour come out wrong.
      {City("a", "", 1, -530), 270, {}, {}},
      {City("a", "", 1, 30), 30, {}, {}},
      {City("a", "", 1, -30), -30, {}, {}},
      {City("a", "", 1, -500, 1, Change(2, 0, 0, 3), Change(14, 4, 6, 9)),
       300,
       {0, 10, 6, 5, 14},
       {0, 4, 0, 1, 2}},
      // A fixed date is that of the present year.
      {City("a", "", 1, 200, 2, Change(2, 0, 5, 3), Change(15, 30, 5, 9)),
       -120,
       {1997, 10, 0, 31, 15},
       {1997, 4, 0, 1, 2}},
      {City("a", "", 1, 200, 3, Change(2, 0, 0, 3), Change(3, 0, 0, 9)),
       -120,
       {0, 10, 0, 0, 3},
       {0, 4, 0, 0, 2}},
  };
  for (const auto& each : cases) {
    TIME_ZONE_INFORMATION zone;
    zone.StandardDate.wSecond = 9;
    EXPECT_TRUE(CityToTimeZone(each.city, zone));
    EXPECT_EQ(zone.Bias, each.bias);
    EXPECT_EQ(zone.StandardBias, 0);
    EXPECT_EQ(zone.DaylightBias, -60);
    EXPECT_EQ(zone.StandardDate, each.standard) << each.bias;
    EXPECT_EQ(zone.DaylightDate, each.daylight) << each.bias;
  }
}

TEST_F(ZonesTest, AZoneOfTheEnginesFindsItsNumber) {
  auto cities = SomeCities();
  for (const auto& [country, zone] :
       {std::pair("Mexico", 8), {"US", 10}, {"USA", 11}, {"Chile", 12}, {"Chile", 13}}) {
    const auto number = static_cast<std::uint8_t>(zone);
    cities.push_back(City("X" + std::to_string(zone), country, number, -800));
  }
  const auto numberOf = [](const WMCityRecord& city) {
    TIME_ZONE_INFORMATION zone;
    CityToTimeZone(city, zone);
    PWTimeZone wanted(zone);
    std::int32_t id = -1;
    const bool found = ZoneIdOfTimeZone(wanted, id);
    return std::pair(found, id);
  };
  using Found = std::pair<bool, std::int32_t>;
  PutZoneFiles(platform, cities, "New York, NY", 11);
  ASSERT_TRUE(LoadHomeZone());
  EXPECT_EQ(numberOf(City("", "", 0, -800)), Found(true, 10)) << "the last of those that are tried";
  EXPECT_EQ(numberOf(cities[4]), Found(true, 1)) << "the working zone";
  EXPECT_EQ(numberOf(City("", "", 0, 100)), Found(false, 1));
  PutZoneFiles(platform, cities, "New York, NY", 14);
  ASSERT_TRUE(LoadHomeZone());
  EXPECT_EQ(numberOf(City("", "", 0, -800)), Found(true, 11)) << "one in the USA ends the search";
  PutZoneFiles(platform, cities, "New York, NY", 400);
  ASSERT_TRUE(LoadHomeZone());
  EXPECT_EQ(numberOf(City("", "", 0, 1000)), Found(false, 1)) << "no zone table is that long";
  platform.files.Put("C:\\Data\\timezone.dat", std::string(12 * 34 - 1, 'x'));
  ASSERT_TRUE(LoadHomeZone());
  EXPECT_EQ(numberOf(City("", "", 0, -800)), Found(true, 10)) << "half an entry is none";
  platform.files.Delete("C:\\Data\\timezone.dat");
  ASSERT_TRUE(LoadHomeZone());
  EXPECT_EQ(numberOf(City("", "", 0, -800)), Found(false, 1));
}

TEST(ZoneRuleTest, OddRulesGiveADayOfTheMonth) {
  const auto days = [](std::int8_t mode, int week, int weekday, int month, std::int32_t year) {
    const pw::DaylightRule rule{mode, Change(0, week, weekday, month), Change(0, 0, 0, 0)};
    const WMBrokenTime start = BrokenTimeOf(pw::BoundsOfYear(rule, year).start);
    return std::pair(start.mon, start.mday);
  };
  using Day = std::pair<std::int32_t, std::int32_t>;
  // The month ends on that weekday; has five of them; has four.
  EXPECT_EQ(days(1, 4, 0, 3, 2000), Day(3, 30));
  EXPECT_EQ(days(1, 4, 6, 3, 2000), Day(3, 29));
  EXPECT_EQ(days(1, 4, 5, 3, 2000), Day(3, 28));
  EXPECT_EQ(days(1, 100, 5, 3, 2000), Day(3, 28));
  EXPECT_EQ(days(1, 3, 6, 3, 2000), Day(3, 22));
  EXPECT_EQ(days(1, 0, 6, 3, 2000), Day(3, 1));
  EXPECT_EQ(days(1, -1, 6, 3, 2000), Day(3, 1));
  EXPECT_EQ(days(1, 2, 7, 3, 2000), Day(3, 1));
  EXPECT_EQ(days(1, 2, -1, 3, 2000), Day(3, 1));
  // Months outside the year, and days outside the month.
  EXPECT_EQ(days(1, 0, 6, -3, 2000), Day(0, 1));
  EXPECT_EQ(days(1, 0, 5, 12, 2000), Day(11, 1));
  EXPECT_EQ(days(2, 29, 0, 1, 2000), Day(2, 1));
  EXPECT_EQ(days(0, 1, 1, 1, 2000), Day(0, 1));
}

TEST_F(ZonesTest, ARuleThatIsNotUnderstoodKeepsTheBoundsOfBefore) {
  auto cities = SomeCities();
  cities[3].dstMode = 3;
  PutZoneFiles(platform, cities, "New York, NY");
  ASSERT_TRUE(LoadHomeZone());
  const std::int32_t summer = PlainSeconds(1997, 7, 1, 12, 0, 0);
  EXPECT_EQ(SecondsToLocal(summer).isdst, 1);
  ASSERT_TRUE(SwitchZone(6, false));
  EXPECT_EQ(SecondsToLocal(summer).isdst, 1) << "New York's summer of that year";
  EXPECT_EQ(SecondsToLocal(PlainSeconds(1998, 7, 1, 12, 0, 0)).isdst, 0);
}

}  // namespace
