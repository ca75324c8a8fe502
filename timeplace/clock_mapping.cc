#include "timeplace/clock_mapping.h"

#include <cstdint>

#include "base/text.h"
#include "framework/timezone_record.h"

namespace pw {
namespace {

constexpr std::uint32_t kDaylightMinutes = 60;

// A change between standard and daylight time in one word, from its highest byte down: the month
// from 1; the week from 1, or 0 for a fixed date; the weekday from 1, or the day; the hour.
std::uint32_t PackSwitch(const WMDaylightChange& change, bool byWeekday) {
  const auto byte = [](std::int32_t value) { return static_cast<std::uint32_t>(value) & 0xFF; };
  const std::int32_t week = byWeekday ? change.week + 1 : 0;
  const std::int32_t day = byWeekday ? change.weekday + 1 : change.week + 1;
  return byte(change.MonthOfYear()) << 24 | byte(week) << 16 | byte(day) << 8 |
         byte(change.HourOfDay());
}

}  // namespace

std::string CityName::Key() const {
  return state.empty() ? city : city + ", " + state;
}

CityName SplitCityText(std::string_view text) {
  const std::size_t comma = text.find(',');
  if (comma == std::string_view::npos) return {std::string(Trimmed(text)), ""};
  const std::string_view behind = text.substr(comma + 1);
  return {std::string(Trimmed(text.substr(0, comma))),
          std::string(Trimmed(behind.substr(0, behind.find(','))))};
}

CityName CityNameOf(PWRecord& record) {
  const PWTimezoneRecord clock(&record);
  return {clock.City().Str(), clock.State().Str()};
}

void DescribeCity(PWRecord& record, const CityName& name, std::string_view country,
                  const WMCityRecord& city) {
  PWTimezoneRecord clock(&record);
  clock.City() = name.city;
  clock.State() = name.state;
  clock.Country() = country;
  // Its sign is the offset's, unlike that of the engine's own zones.
  const std::int32_t minutes = city.offset / 100 * 60 + city.offset % 100;
  clock.Bias(static_cast<std::uint32_t>(minutes));
  clock.StandardBias(0);
  const bool byWeekday = city.dstMode == kDaylightByWeekday;
  if (!byWeekday && city.dstMode != kDaylightByDate) {
    clock.DaylightBias(0);
    return;
  }
  clock.DaylightBias(kDaylightMinutes);
  clock.DaylightSwitch(PackSwitch(city.dstStart, byWeekday));
  clock.StandardSwitch(PackSwitch(city.dstEnd, byWeekday));
}

}  // namespace pw
