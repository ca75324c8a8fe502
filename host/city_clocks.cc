#include "host/city_clocks.h"

#include <algorithm>
#include <string_view>
#include <utility>

#include "framework/registry.h"
#include "host/city_table.h"
#include "host/location_file.h"
#include "host/organiser_folder.h"
#include "host/products.h"
#include "timeplace/date.h"
#include "timeplace/engine_zone.h"
#include "timeplace/zone_rule.h"

namespace pw {
namespace {

constexpr const char* kCityFile = "\\cityinfo.dat";

// Of the first edition that has one, in the order in which the module asks them.
std::string HomeCityName() {
  for (const std::size_t edition : {0, 3, 2}) {
    PWRegistry registry;
    PWString city;
    if (registry.Open(kProducts[edition].mainKey, false) == 0) continue;
    registry.Read("LocalCity", city);
    if (!city.IsEmpty()) return city.Str();
  }
  return {};
}

}  // namespace

CityClocks CityClocks::Of(EngineRun& run) {
  const auto bytes = ReadLocation(OrganiserFolder(run) + kCityFile, kLargestCityFile);
  if (!bytes) return {};
  auto listing = ListCities(*bytes);
  if (!listing) return {};
  return {std::move(listing->cities), HomeCityName()};
}

CityClocks::CityClocks(std::vector<WMCityRecord> all, std::string_view homeName)
    : cities(std::move(all)) {
  const auto found = std::find_if(cities.begin(), cities.end(), [&](const WMCityRecord& city) {
    return city.Name() == homeName;
  });
  if (found != cities.end()) home = static_cast<std::size_t>(found - cities.begin());
}

const WMCityRecord* CityClocks::Fitting(const PWTimeZone& zone) const {
  const auto fits = [&](const WMCityRecord& city) {
    return zone == EngineZoneOf(city, zone.zone.DaylightDate.wYear);
  };
  if (home && fits(*Home())) return Home();
  const auto found = std::find_if(cities.begin(), cities.end(), fits);
  return found == cities.end() ? nullptr : &*found;
}

PWDateTimeStamp LocalStamp(const WMCityRecord* city, const PWDateTimeStamp& utc) {
  if (city == nullptr) return utc;
  return StampOf(BrokenTimeOf(UtcToLocal(*city, StampToSeconds(utc)).seconds));
}

std::int32_t UtcSeconds(const WMCityRecord* city, const PWDateTimeStamp& local) {
  const std::int32_t seconds = StampToSeconds(local);
  return city == nullptr ? seconds : LocalToUtc(*city, seconds);
}

}  // namespace pw
