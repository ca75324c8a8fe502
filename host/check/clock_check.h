#pragma once

#include <string_view>

#include "host/check/finding.h"

// The world clocks, and the files of cities and places behind them.
namespace pw {

FileCheck CheckClocks(std::string_view bytes);
FileCheck CheckCities(std::string_view bytes);
FileCheck CheckZoneTable(std::string_view bytes);
FileCheck CheckPlaces(std::string_view bytes);

}  // namespace pw
