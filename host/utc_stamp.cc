#include "host/utc_stamp.h"

#include <algorithm>
#include <chrono>

#include "base/text.h"

namespace pw {
namespace {

// The seconds from 1970 to a date and time, both of one zone without daylight time.
std::int64_t PlainSecondsOf(std::int32_t year, std::int32_t month, std::int32_t day,
                            std::int32_t hour, std::int32_t minute, std::int32_t second) {
  const std::chrono::sys_days date =
      std::chrono::year(year) / static_cast<int>(month) / static_cast<int>(day);
  const auto days = std::int64_t{date.time_since_epoch().count()};
  return ((days * 24 + hour) * 60 + minute) * 60 + second;
}

// How far the machine's clocks are ahead of UTC at a moment.
std::int64_t OffsetAt(Clock& clock, std::int64_t seconds) {
  const CivilTime local = clock.Local(seconds);
  return PlainSecondsOf(local.year, local.month, local.day, local.hour, local.minute,
                        local.second) -
         seconds;
}

bool IsDateAndTime(const PWDateTimeStamp& stamp) {
  const std::chrono::year_month_day date(
      std::chrono::year(stamp.year), std::chrono::month(stamp.month), std::chrono::day(stamp.day));
  return date.ok() && stamp.year > 0 && stamp.hour < 24 && stamp.minute < 60 && stamp.second < 60;
}

}  // namespace

std::string UtcStamp(Clock& clock, std::int64_t seconds) {
  const CivilTime utc = clock.Utc(seconds);
  return Format("%04d%02d%02dT%02d%02d%02dZ", utc.year, utc.month, utc.day, utc.hour, utc.minute,
                utc.second);
}

std::string UtcStampOfLocal(Clock& clock, const PWDateTimeStamp& stamp) {
  if (!IsDateAndTime(stamp)) return {};
  const std::int64_t local =
      PlainSecondsOf(stamp.year, stamp.month, stamp.day, stamp.hour, stamp.minute, stamp.second);
  // With the offsets on both sides of a switch that may be near.
  constexpr std::int64_t kDay = 86400;
  const std::int64_t a = local - OffsetAt(clock, local - kDay);
  const std::int64_t b = local - OffsetAt(clock, local + kDay);
  const auto [earlier, later] = std::minmax(a, b);
  const bool isEarlier = earlier + OffsetAt(clock, earlier) == local;
  const bool isLater = later + OffsetAt(clock, later) == local;
  return UtcStamp(clock, isEarlier && !isLater ? earlier : later);
}

}  // namespace pw
