#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "platform/testing/test_platform.h"
#include "timeplace/city_format.h"

namespace pw::test {

// A daylight change: hour of the day, week or day from 0, weekday from 0, month from 0.
inline WMDaylightChange Change(int hour, int week, int weekday, int month) {
  WMDaylightChange change;
  change.pm = hour >= 12 ? 1 : 0;
  change.hour = static_cast<std::int8_t>(hour % 12);
  change.week = static_cast<std::int8_t>(week);
  change.weekday = static_cast<std::int8_t>(weekday);
  change.month = static_cast<std::int8_t>(month);
  return change;
}

inline WMCityRecord City(const std::string& name, const std::string& country, std::uint8_t zone,
                         std::int16_t offset, std::int8_t mode = kNoDaylight,
                         WMDaylightChange start = {}, WMDaylightChange end = {}) {
  WMCityRecord city;
  city.SetName(name);
  city.SetCountry(country);
  city.zone = zone;
  city.offset = offset;
  city.dstMode = mode;
  city.dstStart = start;
  city.dstEnd = end;
  return city;
}

// Cities of every kind, in the order of their names: north, south, half an hour off, without a
// rule, by fixed dates. The last weeks of months are the fifth, number 4.
inline std::vector<WMCityRecord> SomeCities() {
  return {
      City("Adelaide", "Australia", 3, 930, kDaylightByWeekday, Change(2, 4, 0, 9),
           Change(3, 4, 0, 2)),
      City("Calcutta", "India", 4, 530),
      City("Caracas", "Venezuela", 5, -430),
      City("Lima", "Peru", 6, -500),
      City("New York, NY", "USA", 1, -500, kDaylightByWeekday, Change(2, 0, 0, 3),
           Change(2, 4, 0, 9)),
      City("Nowhere", "Nowhere", 7, 200, kDaylightByDate, Change(2, 0, 0, 3), Change(15, 30, 0, 9)),
      City("Sydney", "Australia", 2, 1000, kDaylightByWeekday, Change(2, 4, 0, 9),
           Change(3, 4, 0, 2)),
  };
}

// Puts the city file and a zone table with that many numbers into "C:\Data", and makes the city the
// organiser's own.
inline void PutZoneFiles(TestPlatform& platform, const std::vector<WMCityRecord>& cities,
                         const std::string& localCity, std::size_t zones = 10) {
  constexpr const char* kMain = "Software\\Gullwing\\PairWise Desktop\\Version 1\\Main";
  platform.registry.Set(kMain, "DATA", TextValue("C:\\Data"));
  platform.registry.Set(kMain, "LocalCity", TextValue(localCity));
  platform.files.Put("C:\\Data\\cityinfo.dat", city::EncodeCityFile(cities));
  platform.files.Put("C:\\Data\\timezone.dat", std::string(zones * 34, '\0'));
}

}  // namespace pw::test
