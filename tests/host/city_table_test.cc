#include "host/city_table.h"

#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "tests/support/city_file_builder.h"
#include "tests/support/zone_files.h"

namespace pw {
namespace {

using test::Change;
using test::City;
using test::CityFileBytes;

TEST(CityTable, SaysInWordsWhatARecordHolds) {
  WMDaylightChange damaged = Change(2, 4, 9, 40);
  damaged.pm = 1;
  damaged.hour = 120;
  const struct {
    WMCityRecord city;
    std::vector<std::string> row;
  } cases[] = {
      {City("New York, NY", "USA", 1, -500, kDaylightByWeekday, Change(2, 1, 0, 2),
            Change(14, 9, 6, 10)),
       {"New York, NY", "1", "-05:00", "2nd Sun Mar 02:00", "last Sat Nov 14:00", "USA"}},
      {City("Z\xFCrich", "Schweiz", 2, 100), {"Zürich", "2", "+01:00", "", "", "Schweiz"}},
      {City("A", "B", 3, -330, kDaylightByDate, Change(0, 0, 5, 3), Change(23, 30, 0, 11)),
       {"A", "3", "-03:30", "1 Apr 00:00", "31 Dec 23:00", "B"}},
      {City("A", "B", 255, 0, 7, Change(2, 1, 0, 2), Change(2, 1, 0, 2)),
       {"A", "255", "+00:00", "unknown", "unknown", "B"}},
      {City("A", "B", 0, -32768, kDaylightByWeekday, damaged, Change(2, -3, 0, -1)),
       {"A", "0", "-328:08", "1 Dec 132:00", "1 Jan 02:00", "B"}},
  };
  for (const auto& each : cases) EXPECT_EQ(CityTable({each.city}).rows.at(0), each.row);
}

TEST(CityTable, ListsTheWholeCitiesOfAFileByTheirNames) {
  const std::string whole = test::SevenCities().Build();
  const auto names = [](const Outcome<CityListing>& listing) {
    std::string text;
    if (listing) {
      for (const auto& city : listing->cities) text.append(city.Name()).append(" ");
    }
    return text;
  };
  const auto all = ListCities(whole);
  EXPECT_EQ(names(all), "Aachen Berlin Dublin Madrid Zagreb ");
  EXPECT_FALSE(all->isCutOff);
  const auto cut = ListCities(whole.substr(0, CityFileBytes::OffsetOf(4) - 1));
  EXPECT_EQ(names(cut), "Berlin Madrid ");
  EXPECT_TRUE(cut->isCutOff);
  EXPECT_TRUE(ListCities(std::string(4, '\0'))) << "no cities at all";

  const struct {
    std::string bytes;
    const char* why;
  } bad[] = {
      {whole.substr(0, 3), "too short"},
      {whole.substr(0, CityFileBytes::OffsetOf(2) - 1), "city 1 of 0"},
      {"a text of no meaning" + whole, "city 8289 of 7"},
      {std::string(1000, '\0'), "city 0 of 4"},
  };
  for (const auto& each : bad) {
    const auto failed = ListCities(each.bytes);
    ASSERT_FALSE(failed) << each.why;
    EXPECT_NE(failed.Why().message.find(each.why), std::string::npos) << failed.Why().message;
  }
}

}  // namespace
}  // namespace pw
