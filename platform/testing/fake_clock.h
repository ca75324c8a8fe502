#pragma once

#include <cstdint>

#include "platform/clock.h"

namespace pw {

// A clock that moves only when a test moves it. Its zone is a fixed distance from UTC.
class FakeClock : public Clock {
 public:
  std::int64_t now = 852'120'000;  // 1997-01-01 12:00:00 UTC
  std::uint32_t ticks = 0;
  std::int32_t localOffset = 0;  // local time less UTC, in seconds

  // Lets time pass, for the ticks too.
  void Advance(std::int64_t seconds);

  std::int64_t Now() override { return now; }
  std::uint32_t Ticks() override { return ticks; }
  CivilTime Utc(std::int64_t seconds) override;
  CivilTime Local(std::int64_t seconds) override;
};

}  // namespace pw
