#pragma once

#include <string>
#include <string_view>

#include "framework/record.h"
#include "timeplace/city_format.h"

namespace pw {

// A city's name in its two parts. Parted by a comma, the second may be empty; a further comma and
// what is behind it don't count.
struct CityName {
  std::string city;
  std::string state;

  // What the city file knows it by: ", " between the parts where there is a state.
  std::string Key() const;
};
CityName SplitCityText(std::string_view text);

// That of a timezone record.
CityName CityNameOf(PWRecord& record);

// Fills a timezone record of a city with what the city file says of its zone. The flags are left
// alone.
void DescribeCity(PWRecord& record, const CityName& name, std::string_view country,
                  const WMCityRecord& city);

}  // namespace pw
