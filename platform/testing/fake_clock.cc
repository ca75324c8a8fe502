#include "platform/testing/fake_clock.h"

#include <algorithm>
#include <chrono>

namespace pw {
namespace {

constexpr std::int64_t kFirstSecond = -62'135'596'800;  // of the year 1
constexpr std::int64_t kLastSecond = 253'402'300'799;   // of the year 9999

std::int64_t Clamped(std::int64_t seconds) {
  return std::clamp(seconds, kFirstSecond, kLastSecond);
}

}  // namespace

void FakeClock::Advance(std::int64_t seconds) {
  now += seconds;
  ticks += static_cast<std::uint32_t>(seconds) * 1000U;
}

CivilTime FakeClock::Utc(std::int64_t seconds) {
  using std::chrono::floor;
  const std::chrono::sys_seconds moment{std::chrono::seconds(Clamped(seconds))};
  const auto day = floor<std::chrono::days>(moment);
  const std::chrono::year_month_day date(day);
  const std::chrono::hh_mm_ss time(moment - day);
  return {static_cast<int>(date.year()),
          static_cast<std::int32_t>(static_cast<unsigned>(date.month())),
          static_cast<std::int32_t>(static_cast<unsigned>(date.day())),
          static_cast<std::int32_t>(time.hours().count()),
          static_cast<std::int32_t>(time.minutes().count()),
          static_cast<std::int32_t>(time.seconds().count()),
          static_cast<std::int32_t>(std::chrono::weekday(day).c_encoding())};
}

CivilTime FakeClock::Local(std::int64_t seconds) {
  return Utc(Clamped(seconds) + localOffset);
}

}  // namespace pw
