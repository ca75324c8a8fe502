#pragma once

#include <chrono>
#include <cstdint>
#include <map>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "framework/values.h"
#include "host/city_clocks.h"
#include "host/formats/calendar_reader.h"

namespace pw {

// A date and the time on it, by the clocks of some city.
using LocalStart = std::pair<std::chrono::sys_days, std::chrono::seconds>;
LocalStart LocalOf(const PWDateTimeStamp& stamp);

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

  // Whether it is a date or a moment: no other text, and none of a day that there isn't.
  static bool IsTime(const CalendarTime& time);

  // The moment in UTC; a date is its first moment by the clocks of the city. Nothing for what is no
  // time, and outside of the years 1970 to 2037, which 32 bits of seconds hold.
  std::optional<std::int32_t> UtcOf(const CalendarTime& time);

  // The date that it has by the clocks of a city, and the time on it, which is midnight for a date.
  // Nothing for what is no time. Outside of the years that have seconds it is as it is written.
  std::optional<LocalStart> LocalBy(const WMCityRecord* city, const CalendarTime& time);
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
