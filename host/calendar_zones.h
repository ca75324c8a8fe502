#pragma once

#include <map>
#include <string>

#include "timeplace/city_format.h"

namespace pw {

// A city's name, in UTF-8, of those characters alone that every program takes in a zone's name.
std::string ZoneNameOf(const WMCityRecord& city);

// The cities whose clocks the events of an iCalendar file go by.
class CalendarZones {
 public:
  // The name under which a city's clocks stand in the file; the city isn't owned. Of its characters
  // it has those that every program takes in such a name.
  const std::string& NameOf(const WMCityRecord& city);

  // Appends the clocks of all cities that were asked for.
  void Append(std::string& out) const;

 private:
  bool IsTaken(const std::string& name) const;

  std::map<const WMCityRecord*, std::string> names;
};

}  // namespace pw
