#include "host/system_zones/system_cities.h"

#include <stdlib.h>

#include <cstdlib>
#include <ctime>
#include <filesystem>
#include <iterator>
#include <map>
#include <optional>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "platform/testing/test_platform.h"
#include "tests/platform/temp_folder.h"
#include "tests/support/compiled_zone_builder.h"
#include "tests/support/zone_files.h"
#include "timeplace/city_index.h"
#include "timeplace/date.h"
#include "timeplace/zone_rule.h"

namespace pw {
namespace {

using test::Change;
using test::CompiledZoneBytes;

constexpr std::int32_t kNow = 1'767'225'600;  // 2026 begins

// A folder of zones as this machine might have it.
class ZoneFolder {
 public:
  void Add(const std::string& id, const CompiledZoneBytes& zone, const std::string& code = "XX") {
    folder.Put(id, zone.Build());
    rows += code + "\t+0000+00000\t" + id + "\tremark\n";
  }
  void Add(const std::string& id, const std::string& rule, const std::string& code = "XX") {
    CompiledZoneBytes zone;
    zone.rule = rule;
    Add(id, zone, code);
  }
  void AddRow(const std::string& row) { rows += row + "\n"; }

  SystemCities Cities() const {
    folder.Put("zone1970.tab", "# a remark\n" + rows);
    folder.Put("iso3166.tab", "#code\tname\nXX\tHere\nCI\tCôte d'Ivoire\nUS\tUnited States\nZZ\t" +
                                  std::string(60, 'z') + "\n");
    auto cities = CitiesOfSystem(folder.Path(), kNow);
    EXPECT_TRUE(cities);
    return cities ? *cities : SystemCities();
  }

  TempFolder folder;

 private:
  std::string rows;
};

TEST(SystemCities, AreNamedByTheirZones) {
  ZoneFolder folder;
  folder.Add("America/New_York", "EST5", "US,CA");
  folder.Add("America/Argentina/Buenos_Aires", "AAA3");
  folder.Add("Africa/Abidjan", "GMT0", "CI,ML");
  folder.Add("Zone/Of_a_name_that_is_much_too_long", "GMT0", "ZZ");
  folder.Add("Nowhere", "GMT0", "QQ");
  const SystemCities made = folder.Cities();
  std::map<std::string, std::string> countries;
  for (const SystemCity& city : made.cities) {
    countries[std::string(city.record.Name())] = city.record.Country();
  }
  EXPECT_EQ(countries,
            (std::map<std::string, std::string>{{"New York, NY", "USA"},
                                                {"Buenos Aires", "Here"},
                                                {"Abidjan", "C\xF4te d'Ivoire"},
                                                {"Of a name that is much to", std::string(45, 'z')},
                                                {"Nowhere", "QQ"}}));
}

TEST(SystemCities, HaveTheClocksOfTheirRuleLines) {
  ZoneFolder folder;
  const struct {
    const char* rule;
    std::int16_t offset;
    std::int8_t mode;
    WMDaylightChange start;
    WMDaylightChange end;
  } cases[] = {
      {"<-0330>3:30", -330, kNoDaylight, {}, {}},
      {"<+0545>-5:45", 545, kNoDaylight, {}, {}},
      {"<+14>-14", 1400, kNoDaylight, {}, {}},
      {"EST5EDT,M3.2.0,M11.1.0", -500, kDaylightByWeekday, Change(2, 1, 0, 2), Change(2, 0, 0, 10)},
      {"AEST-10AEDT,M10.1.0,M4.1.0/3", 1000, kDaylightByWeekday, Change(2, 0, 0, 9),
       Change(3, 0, 0, 3)},
      {"CET-1CEST,M3.5.0,M10.4.4/23", 100, kDaylightByWeekday, Change(2, 4, 0, 2),
       Change(23, 3, 4, 9)},
      {"IST-1GMT0,M10.5.0,M3.5.0/1", 0, kDaylightByWeekday, Change(1, 4, 0, 2), Change(2, 4, 0, 9)},
  };
  for (const auto& each : cases) {
    folder.Add("Z" + std::to_string(&each - cases), each.rule);
  }
  const SystemCities made = folder.Cities();
  ASSERT_EQ(made.cities.size(), std::size(cases)) << made.LeftOutText();
  for (std::size_t i = 0; i < std::size(cases); ++i) {
    const WMCityRecord& city = made.cities[i].record;
    EXPECT_EQ(city.offset, cases[i].offset) << cases[i].rule;
    EXPECT_EQ(city.dstMode, cases[i].mode) << cases[i].rule;
    EXPECT_EQ(city.dstStart, cases[i].start) << cases[i].rule;
    EXPECT_EQ(city.dstEnd, cases[i].end) << cases[i].rule;
  }
}

TEST(SystemCities, LeaveOutWhatARecordCannotSay) {
  CompiledZoneBytes changesLater;
  changesLater.types = {0, 3600};
  changesLater.changes = {{kNow + 2 * kSecondsPerCommonYear, 1}};
  changesLater.rule = "AAA-1";
  CompiledZoneBytes changedBefore = changesLater;
  changedBefore.changes[0].at = kNow;
  CompiledZoneBytes changesMuchLater = changesLater;
  changesMuchLater.changes[0].at = kNow + 4LL * kSecondsPerCommonYear;
  changesMuchLater.types = {3600, 0};

  ZoneFolder folder;
  folder.Add("Before", changedBefore);
  folder.Add("Much_later", changesMuchLater);
  folder.Add("Later", changesLater);
  folder.Add("Other/Before", "UTC0");
  folder.AddRow("XX\t+0000+00000\tMissing");
  folder.AddRow("no columns");
  folder.Add("Days", "AAA0BBB,J60,M10.5.0");
  folder.Add("Days2", "AAA0BBB,M3.5.0,300");
  folder.Add("Before_midnight", "AAA0BBB,M3.5.0/-1,M10.5.0");
  folder.Add("Midnight", "AAA0BBB,M3.5.0,M10.5.0/24");
  folder.Add("Quarter", "AAA0BBB,M3.5.0/2:45,M10.5.0/3");
  folder.Add("Two_hours", "AAA0BBB-2,M3.5.0/1,M10.5.0/3");
  folder.Add("Seconds", "AAA0:00:30");
  const SystemCities made = folder.Cities();
  ASSERT_EQ(made.cities.size(), 2U);
  EXPECT_EQ(made.cities[0].zoneId, "Before");
  EXPECT_EQ(made.cities[1].zoneId, "Much_later");
  EXPECT_EQ(made.LeftOutText(),
            "1 without a readable zone file, 2 with changes by the day of the year, "
            "3 with changes at no full hour of the day, "
            "1 with daylight time of other than an hour, 1 with seconds in their offset, "
            "1 whose rule doesn't hold for the next three years, 1 with another city's name");
}

TEST(SystemCities, ShareZoneNumbersByTheirClocksFromWestToEast) {
  ZoneFolder folder;
  folder.Add("East", "AAA-2");
  folder.Add("West", "BBB2");
  folder.Add("East_too", "CCC-2");
  folder.Add("East_in_summer", "AAA-2BBB,M3.5.0,M10.5.0");
  const SystemCities made = folder.Cities();
  std::map<std::string, int> numbers;
  for (const SystemCity& city : made.cities) numbers[city.zoneId] = city.record.zone;
  EXPECT_EQ(numbers, (std::map<std::string, int>{
                         {"West", 1}, {"East", 2}, {"East_too", 2}, {"East_in_summer", 3}}));
  EXPECT_EQ(made.ZoneFile(), std::string(std::size_t{4} * 34, '\0'));

  for (int minutes = 1; minutes <= 260; ++minutes) {
    const std::string text = std::to_string(minutes / 60) + ":" + std::to_string(minutes % 60);
    folder.Add("At_" + std::to_string(minutes), "AAA-" + text);
  }
  const SystemCities many = folder.Cities();
  // 260 offsets, of which two hours are there already, and the two other kinds from above.
  EXPECT_EQ(many.zones, 255);
  EXPECT_EQ(many.ZoneFile().size(), 256U * 34);
  EXPECT_EQ(many.leftOut[static_cast<std::size_t>(LeftOutReason::kTooManyZones)], 7U);
  for (const SystemCity& city : many.cities) EXPECT_NE(city.record.zone, 0);
}

TEST(SystemCities, NeedBothTables) {
  ZoneFolder folder;
  folder.Cities();
  for (const char* table : {"zone1970.tab", "iso3166.tab"}) {
    std::filesystem::remove(folder.folder.Path() / table);
    const auto failed = CitiesOfSystem(folder.folder.Path(), kNow);
    ASSERT_FALSE(failed);
    EXPECT_NE(failed.Why().message.find(std::string(table) + ": No such file"), std::string::npos)
        << failed.Why().message;
    EXPECT_NE(failed.Why().message.find("tzdata"), std::string::npos);
    folder.Cities();
  }
}

// The C library's idea of a zone, for as long as it lives.
class LibraryZone {
 public:
  explicit LibraryZone(const std::string& id) {
    const char* value = std::getenv("TZ");
    if (value != nullptr) before = value;
    ::setenv("TZ", (":" + id).c_str(), 1);
    ::tzset();
  }
  ~LibraryZone() {
    if (before) {
      ::setenv("TZ", before->c_str(), 1);
    } else {
      ::unsetenv("TZ");
    }
    ::tzset();
  }
  LibraryZone(const LibraryZone&) = delete;
  LibraryZone& operator=(const LibraryZone&) = delete;

  std::int32_t OffsetAt(std::int32_t utc) const {
    const std::time_t moment = utc;
    std::tm local{};
    ::localtime_r(&moment, &local);
    return static_cast<std::int32_t>(local.tm_gmtoff);
  }

 private:
  std::optional<std::string> before;
};

std::int32_t OffsetOf(const WMCityRecord& city, std::int32_t utc) {
  return UtcToLocal(city, utc).seconds - utc;
}

// There and back: only the second one of an hour that occurs twice becomes the first.
bool ComesBack(const WMCityRecord& city, std::int32_t utc) {
  const LocalTime local = UtcToLocal(city, utc);
  const std::int32_t back = LocalToUtc(city, local.seconds);
  if (back == utc) return true;
  return !local.isDaylight && back == utc - kSecondsPerHour &&
         UtcToLocal(city, back).seconds == local.seconds;
}

// Goes through the days of three years, and through each quarter of an hour of those in which the
// clocks of either change. Gives the number of the library's changes.
int CompareWithLibrary(const SystemCity& city) {
  const LibraryZone library(city.zoneId);
  int changes = 0;
  const std::int32_t end = kNow + 3 * kSecondsPerCommonYear;
  for (std::int32_t day = kNow; day < end; day += kSecondsPerDay) {
    const std::int32_t next = day + kSecondsPerDay;
    const bool changed = library.OffsetAt(day) != library.OffsetAt(next);
    changes += changed ? 1 : 0;
    const bool either = changed || OffsetOf(city.record, day) != OffsetOf(city.record, next);
    const std::int32_t step = either ? kSecondsPerHour / 4 : kSecondsPerDay;
    // A few hours before and after, for a change at the day's edge.
    const std::int32_t around = either ? 4 * kSecondsPerHour : 0;
    for (std::int32_t hour = day - around; hour < next + around; hour += step) {
      for (const std::int32_t utc : {hour - 1, hour}) {
        if (OffsetOf(city.record, utc) != library.OffsetAt(utc) || !ComesBack(city.record, utc)) {
          ADD_FAILURE() << city.zoneId << " at " << utc;
          return changes;
        }
      }
    }
  }
  return changes;
}

TEST(SystemCities, OfThisMachineAgreeWithItsLibrary) {
  const auto made = CitiesOfSystem(SystemZoneFolder(), kNow);
  ASSERT_TRUE(made) << made.Why().message;
  EXPECT_GE(made->cities.size(), 270U);
  int changes = 0;
  for (const SystemCity& city : made->cities) changes += CompareWithLibrary(city);
  EXPECT_GT(changes, 400);
}

TEST(SystemCities, OfThisMachineAreFoundInTheirFile) {
  const auto made = CitiesOfSystem(SystemZoneFolder(), kNow);
  ASSERT_TRUE(made) << made.Why().message;
  TestPlatform platform;
  platform.files.Put("C:\\Data\\cityinfo.dat", made->CityFile());
  WMCityIndex index("C:\\Data\\cityinfo.dat");
  EXPECT_EQ(index.Count(), made->cities.size());
  int american = 0;
  for (const SystemCity& city : made->cities) {
    const std::string name(city.record.Name());
    const WMCityRecord* found = index.Find(name);
    ASSERT_NE(found, nullptr) << name;
    EXPECT_EQ(found->Name(), name);
    EXPECT_EQ(found->zone, city.record.zone);
    if (city.record.Country() != "USA") continue;
    ++american;
    EXPECT_EQ(name.find(", "), name.size() - 4) << name << " lacks its state";
  }
  EXPECT_GE(american, 29);
  WMCityRecord any;
  for (int zone = 1; zone <= made->zones; ++zone) {
    EXPECT_TRUE(index.FindByZone(static_cast<std::uint8_t>(zone), any)) << zone;
  }
}

}  // namespace
}  // namespace pw
