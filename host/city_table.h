#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

#include "host/outcome.h"
#include "host/text_table.h"
#include "timeplace/city_format.h"

// The organiser's city file, for people to read.
namespace pw {

// No city file is larger: its nodes' numbers have 16 bits.
inline constexpr std::size_t kLargestCityFile =
    city::kHeaderSize + city::kNodeSize * (std::size_t{0xFFFF} + 1);

// The cities of a file that aren't deleted.
struct CityListing {
  std::vector<WMCityRecord> cities;  // by their names
  bool isCutOff = false;             // the last node isn't whole
};

// A failure doesn't name the file: one that is too short, or whose tree starts at a node that isn't
// there.
Outcome<CityListing> ListCities(std::string_view bytes);

// A row a city. Daylight time is in words, "2nd Sun Mar 02:00" to "1st Sun Nov 02:00", each on the
// clocks before the change. What a small terminal has no room for comes last.
TextTable CityTable(const std::vector<WMCityRecord>& cities);

}  // namespace pw
