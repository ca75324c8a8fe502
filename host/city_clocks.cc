#include "host/city_clocks.h"

#include <algorithm>
#include <string_view>
#include <utility>

#include "base/codepage.h"
#include "framework/registry.h"
#include "host/calendar_zones.h"
#include "host/city_table.h"
#include "host/organiser_folder.h"
#include "host/products.h"
#include "platform/whole_file.h"
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
  const auto bytes = ReadWholeFile(OrganiserFolder(run) + kCityFile, kLargestCityFile);
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

template <class Test>
const WMCityRecord* CityClocks::FirstOf(Test test) const {
  if (home && test(*Home())) return Home();
  const auto found = std::find_if(cities.begin(), cities.end(), test);
  return found == cities.end() ? nullptr : &*found;
}

const WMCityRecord* CityClocks::Fitting(const PWTimeZone& zone) const {
  return FirstOf([&](const WMCityRecord& city) {
    return zone == EngineZoneOf(city, zone.zone.DaylightDate.wYear);
  });
}

const WMCityRecord* CityClocks::Named(std::string_view zone) const {
  const WMCityRecord* own =
      FirstOf([&](const WMCityRecord& city) { return ZoneNameOf(city) == zone; });
  if (own != nullptr) return own;
  std::string end(zone.substr(zone.rfind('/') + 1));
  std::replace(end.begin(), end.end(), '_', ' ');
  // The organiser may name a state behind the city.
  return FirstOf([&](const WMCityRecord& city) {
    return CodePageToUtf8(city.Name().substr(0, city.Name().find(','))) == end;
  });
}

const WMCityRecord* CityClocks::WithOffset(std::int32_t minutes, bool hasDaylight) const {
  constexpr int kHundred = 100;
  const std::int32_t hours = minutes / 60;
  return FirstOf([&](const WMCityRecord& city) {
    return city.offset == hours * kHundred + minutes % 60 &&
           (city.dstMode != kNoDaylight) == hasDaylight;
  });
}

PWDateTimeStamp LocalStamp(const WMCityRecord* city, const PWDateTimeStamp& utc) {
  if (city == nullptr) return utc;
  return StampOf(BrokenTimeOf(UtcToLocal(*city, StampToSeconds(utc)).seconds));
}

std::int32_t UtcSeconds(const WMCityRecord* city, const PWDateTimeStamp& local) {
  const std::int32_t seconds = StampToSeconds(local);
  return city == nullptr ? seconds : LocalToUtc(*city, seconds);
}

std::optional<std::int32_t> UtcWithin(const WMCityRecord* city, const PWDateTimeStamp& local) {
  if (local.year < kFirstYearOfSeconds || local.year > kLastYearOfSeconds) return std::nullopt;
  const std::int32_t seconds = UtcSeconds(city, local);
  if (seconds < 0) return std::nullopt;
  return seconds;
}

}  // namespace pw
