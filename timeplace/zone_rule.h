#pragma once

#include <cstdint>

#include "framework/values.h"
#include "timeplace/city_format.h"

// What a city's record says about its clocks, as pure functions: the offset from Greenwich, and the
// part of each year in which daylight time holds. Local seconds count from 1970-01-01 00:00:00 on
// the city's own clocks.
namespace pw {

// Seconds to add to a city's standard time for UTC; positive west of Greenwich. The stored offset
// is hours * 100 + minutes, positive east.
std::int32_t ZoneOffsetSeconds(std::int16_t offset);

// When daylight time begins and ends in a year, as local seconds of the clocks before the change.
// Where it begins after its end, as in the south, it holds outside of the two.
struct DaylightBounds {
  std::int32_t start = 0;
  std::int32_t end = 0;

  // Looks at both ends always: over moments in no order a branch is guessed wrong half the time.
  bool Contains(std::int32_t local) const {
    const bool startsBefore = local >= start;
    const bool endsAfter = local < end;
    return start < end ? startsBefore & endsAfter : startsBefore | endsAfter;
  }

  friend bool operator==(const DaylightBounds&, const DaylightBounds&) = default;
};

// A city's daylight rule.
struct DaylightRule {
  std::int8_t mode = kNoDaylight;
  WMDaylightChange start;
  WMDaylightChange end;

  // Whether the mode is one that says when the bounds are.
  bool IsKnown() const { return mode >= kNoDaylight && mode <= kDaylightByDate; }

  friend bool operator==(const DaylightRule&, const DaylightRule&) = default;
};
DaylightRule RuleOf(const WMCityRecord& city);

// The bounds of a year, which is in full. Without daylight time, and for a mode that isn't known,
// both are the year's first moment. Months outside the year count as the nearest; by weekday, a
// week below 0 or a weekday outside the week gives the first day of the month.
DaylightBounds BoundsOfYear(const DaylightRule& rule, std::int32_t year);

// A moment on local clocks.
struct LocalTime {
  std::int32_t seconds = 0;
  bool isDaylight = false;
};

// What the clocks show at a moment of standard time.
LocalTime StandardToLocal(std::int32_t standard, const DaylightBounds& bounds);

// The reverse: the standard time of what the clocks show. A time in the hour that is skipped when
// daylight time begins is moved forward, in `local` too; the hour that occurs twice when it ends is
// taken for daylight time. Sets `isDaylight`.
std::int32_t LocalToStandard(LocalTime& local, const DaylightBounds& bounds);

// What the clocks of a city show, and the reverse, without any memory of the years before: slower
// than the process's own zone, and for any city. A mode that isn't known is no daylight time here.
LocalTime UtcToLocal(const WMCityRecord& city, std::int32_t utc);
std::int32_t LocalToUtc(const WMCityRecord& city, std::int32_t local);

}  // namespace pw
