#include "host/sample_clocks.h"

#include <algorithm>
#include <string_view>
#include <vector>

#include "base/cursor.h"
#include "host/system_zones/system_cities.h"
#include "timeplace/clock_format.h"

namespace pw {
namespace {

// In the order of the clocks. Where one isn't among the machine's zones another city stands in.
constexpr std::string_view kWanted[clocks::kClocks] = {
    "London", "New York, NY", "Los Angeles, CA", "Sao Paulo",
    "Paris",  "Kolkata",      "Tokyo",           "Sydney"};

std::vector<const WMCityRecord*> ChooseCities(const SystemCities& cities) {
  std::vector<const WMCityRecord*> chosen;
  for (const std::string_view name : kWanted) {
    const auto found =
        std::find_if(cities.cities.begin(), cities.cities.end(),
                     [&](const SystemCity& city) { return city.record.Name() == name; });
    if (found != cities.cities.end()) chosen.push_back(&found->record);
  }
  for (const SystemCity& city : cities.cities) {
    if (chosen.size() >= clocks::kClocks) break;
    if (std::find(chosen.begin(), chosen.end(), &city.record) == chosen.end()) {
      chosen.push_back(&city.record);
    }
  }
  return chosen;
}

// The first is the home clock and the active one.
std::string ClockFile(const std::vector<const WMCityRecord*>& cities) {
  ByteWriter out;
  for (const WMCityRecord* city : cities) {
    WMClock clock;
    clock.SetCityText(city->Name());
    clock.SetCountry(city->Country());
    clock.SetLabel(city->Name().substr(0, city->Name().find(',')));
    clock.inactive = city == cities.front() ? 0 : 1;
    clock.notHome = clock.inactive;
    clocks::EncodeClock(out, clock);
  }
  return out.Release();
}

}  // namespace

Outcome<SampleClocks> MakeSampleClocks(std::int64_t now) {
  const auto cities = CitiesOfSystem(SystemZoneFolder(), now);
  if (!cities) return cities.Why();
  const std::vector<const WMCityRecord*> chosen = ChooseCities(*cities);
  if (chosen.size() < clocks::kClocks) {
    return Failure{SystemZoneFolder().string() + ": too few zones for the clocks"};
  }
  return SampleClocks{ClockFile(chosen), cities->CityFile(), cities->ZoneFile(),
                      std::string(chosen.front()->Name())};
}

}  // namespace pw
