#include "timeplace/engine_zone.h"

#include <cstdlib>

namespace pw {
namespace {

SYSTEMTIME DateOf(const WMDaylightChange& change, std::int8_t mode, std::uint16_t year) {
  SYSTEMTIME date;
  if (mode <= kNoDaylight) return date;
  date.wMonth = static_cast<std::uint16_t>(change.MonthOfYear());
  date.wHour = static_cast<std::uint16_t>(change.HourOfDay());
  if (mode > kDaylightByDate) return date;
  date.wDay = static_cast<std::uint16_t>(change.week + 1);
  if (mode == kDaylightByDate) {
    date.wYear = year;
  } else {
    date.wDayOfWeek = static_cast<std::uint16_t>(std::int32_t{change.weekday});
  }
  return date;
}

}  // namespace

TIME_ZONE_INFORMATION EngineZoneOf(const WMCityRecord& city, std::uint16_t year) {
  constexpr std::int32_t kMinutesPerHour = 60;
  const std::int32_t hours = city.offset / 100;
  const std::int32_t minutes = city.offset % 100 + std::abs(hours) * kMinutesPerHour;
  TIME_ZONE_INFORMATION zone;
  zone.Bias = hours > 0 ? -minutes : minutes;
  zone.StandardDate = DateOf(city.dstEnd, city.dstMode, year);
  zone.DaylightDate = DateOf(city.dstStart, city.dstMode, year);
  zone.DaylightBias = -kMinutesPerHour;
  return zone;
}

}  // namespace pw
