#pragma once

#include <array>
#include <cstdint>
#include <filesystem>
#include <string>
#include <vector>

#include "host/outcome.h"
#include "host/system_zones/city_of_zone.h"
#include "timeplace/city_format.h"

// The organiser's cities and zones, made of this machine's time-zone data.
namespace pw {

struct SystemCity {
  std::string zoneId;  // as this machine calls it, "America/New_York"
  WMCityRecord record;
};

struct SystemCities {
  std::vector<SystemCity> cities;  // in ascending order of their names, bytes unsigned

  // The highest zone number: from 1 on, one for all cities of one offset and daylight rule.
  std::uint8_t zones = 0;

  // How many of this machine's zones have no city, by the reason's number.
  std::array<std::size_t, kLeftOutReasons> leftOut{};

  // The bytes of "cityinfo.dat" and "timezone.dat".
  std::string CityFile() const;
  std::string ZoneFile() const;

  // "3 with daylight time of other than an hour, 1 without a readable zone file"; empty if none was
  // left out.
  std::string LeftOutText() const;
};

// Where this machine keeps its zone files, unless the environment's TZDIR has another folder.
std::filesystem::path SystemZoneFolder();

// The cities of all zones that a city's record can describe, so that it agrees with this machine
// for three years from `now`, in seconds since 1970 UTC, or to the end of the organiser's time in
// 2038. Fails without the tables of zones and countries.
Outcome<SystemCities> CitiesOfSystem(const std::filesystem::path& zoneFolder, std::int64_t now);

}  // namespace pw
