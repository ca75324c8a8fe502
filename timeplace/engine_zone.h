#pragma once

#include <cstdint>

#include "framework/values.h"
#include "timeplace/city_format.h"

namespace pw {

// The zone of a city in the engine's form; its names are empty. Where daylight time goes by dates
// `year` is put into them. West of Greenwich an offset with minutes, and anywhere one of less than
// an hour, gives a bias that is not right; the engine's data has it so.
TIME_ZONE_INFORMATION EngineZoneOf(const WMCityRecord& city, std::uint16_t year);

}  // namespace pw
