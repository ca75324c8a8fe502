#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

#include "host/system_zones/compiled_zone.h"
#include "timeplace/city_format.h"

// One of this machine's zones as a city of the organiser's.
namespace pw {

// Why a zone of this machine has no city.
enum class LeftOutReason {
  kUnreadable,    // no zone file, or none that can be read
  kDayOfYear,     // clocks change by the day of the year
  kTimeOfDay,     // clocks change at another time than an hour of the day
  kNotOneHour,    // daylight time of other than an hour
  kSeconds,       // an offset that isn't in whole minutes
  kNotInForce,    // the rule isn't the one that holds for the next years
  kSameName,      // another city has the name
  kTooManyZones,  // all zone numbers are taken
};
inline constexpr std::size_t kLeftOutReasons = 8;

// The city that a zone is named for, "New York, NY" or "Buenos Aires", in the organiser's code
// page.
std::string CityNameOf(std::string_view zoneId);

// Gives a city the offset and the daylight rule of the line. Says why it can't be, if so; the city
// is then left alone.
std::optional<LeftOutReason> SetClocks(const RuleLine& rule, WMCityRecord& city);

// Whether the organiser finds, from the city, what this machine knows of the zone: at the hours
// around every change of either between the two moments, and at these.
bool AgreesBetween(std::int32_t from, std::int32_t to, const WMCityRecord& city,
                   const CompiledZone& zone);

}  // namespace pw
