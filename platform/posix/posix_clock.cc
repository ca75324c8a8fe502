#include "platform/posix/posix_clock.h"

#include <time.h>

#include <algorithm>
#include <cstdlib>
#include <optional>
#include <string>

#include "base/process_wide.h"

namespace pw {
namespace {

constexpr std::int64_t kFirstSecond = -62'135'596'800;  // of the year 1, in UTC
constexpr std::int64_t kLastSecond = 253'402'300'799;   // of the year 9999
constexpr CivilTime kFirstMoment{1, 1, 1, 0, 0, 0, 1};
constexpr CivilTime kLastMoment{9999, 12, 31, 23, 59, 59, 5};

time_t Clamped(std::int64_t seconds) {
  return static_cast<time_t>(std::clamp(seconds, kFirstSecond, kLastSecond));
}

// The TZ that the C library has taken, or nothing while that isn't known.
ProcessWide<std::optional<std::string>> zoneTaken;

// Has the library look at TZ again where it has changed; it would look at the system's files, too,
// which takes far longer than all else.
void FollowZone() {
  const char* variable = std::getenv("TZ");
  const std::string zone = variable == nullptr ? "none" : '=' + std::string(variable);
  if (*zoneTaken == zone) return;
  tzset();
  *zoneTaken = zone;
}

// A zone may push a moment at either end over the border.
CivilTime FromBroken(const tm& broken) {
  const std::int32_t year = broken.tm_year + 1900;
  if (year < 1) return kFirstMoment;
  if (year > 9999) return kLastMoment;
  return {year,          broken.tm_mon + 1, broken.tm_mday, broken.tm_hour,
          broken.tm_min, broken.tm_sec,     broken.tm_wday};
}

}  // namespace

std::int64_t PosixClock::Now() {
  timespec now{};
  clock_gettime(CLOCK_REALTIME, &now);
  return now.tv_sec;
}

std::uint32_t PosixClock::Ticks() {
  timespec now{};
  clock_gettime(CLOCK_MONOTONIC, &now);
  const auto seconds = static_cast<std::uint64_t>(now.tv_sec);
  const auto nanoseconds = static_cast<std::uint64_t>(now.tv_nsec);
  return static_cast<std::uint32_t>(seconds * 1000 + nanoseconds / 1'000'000);
}

CivilTime PosixClock::Utc(std::int64_t seconds) {
  const time_t moment = Clamped(seconds);
  tm broken{};
  gmtime_r(&moment, &broken);
  return FromBroken(broken);
}

CivilTime PosixClock::Local(std::int64_t seconds) {
  const time_t moment = Clamped(seconds);
  tm broken{};
  FollowZone();
  localtime_r(&moment, &broken);
  return FromBroken(broken);
}

}  // namespace pw
