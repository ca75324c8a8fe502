#pragma once

#include <chrono>
#include <cstdint>
#include <map>
#include <optional>
#include <string>
#include <vector>

#include "framework/values.h"
#include "host/city_clocks.h"
#include "host/formats/calendar_reader.h"

namespace pw {

// What the times of an iCalendar file are by the organiser's clocks.
class CalendarMoments {
 public:
  // Neither is owned.
  CalendarMoments(const CalendarFile& file, const CityClocks& cities);

  // Whether it is a date, without a time.
  static bool IsDate(const CalendarTime& time);

  // The city whose clocks it goes by: that of its zone, or of a zone alike; the home city for a
  // time of no zone, of UTC, or of one that no city has, which is remembered.
  const WMCityRecord* CityOf(const CalendarTime& time);

  // The moment in UTC; a date is its first moment by the clocks of the city. Nothing for a text
  // that is neither, or of a day that there isn't.
  std::optional<std::int32_t> UtcOf(const CalendarTime& time);

  // The date that it has by the clocks of a city.
  std::optional<std::chrono::sys_days> DateBy(const WMCityRecord* city, const CalendarTime& time);

  // The zones that no city has, each once.
  const std::vector<std::string>& UnknownZones() const { return unknown; }

 private:
  const WMCityRecord* CityOfZone(const std::string& name) const;

  const CalendarFile& file;
  const CityClocks& cities;
  std::map<std::string, const WMCityRecord*> known;
  std::vector<std::string> unknown;
};

}  // namespace pw
