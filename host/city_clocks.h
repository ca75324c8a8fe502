#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "framework/values.h"
#include "host/engine_run.h"
#include "timeplace/city_format.h"

namespace pw {

// The cities of the organiser, and what their clocks show: those that the module works with.
class CityClocks {
 public:
  // None: what is local is UTC then.
  CityClocks() = default;

  // Those of the city file in the organiser's folder; none where that can't be read.
  static CityClocks Of(EngineRun& run);

  // `home` is the name of the home city.
  CityClocks(std::vector<WMCityRecord> cities, std::string_view home);

  // The home city; null where the file doesn't have it.
  const WMCityRecord* Home() const { return home ? &cities[*home] : nullptr; }

  // A city of that zone, the home city before others; null where none is.
  const WMCityRecord* Fitting(const PWTimeZone& zone) const;

  // The city whose clocks stand under that name in an iCalendar file of ours, or, as "Berlin" does
  // in "Europe/Berlin", at the end of another program's; null where none is.
  const WMCityRecord* Named(std::string_view zone) const;

  // A city that is so many minutes before Greenwich, east positive, and has daylight time or not,
  // the home city before others; null where none is.
  const WMCityRecord* WithOffset(std::int32_t minutes, bool hasDaylight) const;

 private:
  // The home city or the first one of which it is true, or null.
  template <class Test>
  const WMCityRecord* FirstOf(Test test) const;

  std::vector<WMCityRecord> cities;  // by their names
  std::optional<std::size_t> home;
};

// What the clocks of a city show, and the reverse; those of UTC for null.
PWDateTimeStamp LocalStamp(const WMCityRecord* city, const PWDateTimeStamp& utc);
std::int32_t UtcSeconds(const WMCityRecord* city, const PWDateTimeStamp& local);

// The seconds, which are cut to 32 bits, where they hold them: in the years 1970 to 2037.
std::optional<std::int32_t> UtcWithin(const WMCityRecord* city, const PWDateTimeStamp& local);

}  // namespace pw
