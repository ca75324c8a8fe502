#pragma once

#include <cstdint>

#include "platform/clock.h"

namespace pw {

// This machine's clock. The zone is the C library's: that of the environment's TZ, looked at again
// for each moment, or else the system's as it was when the process first asked for it.
class PosixClock : public Clock {
 public:
  std::int64_t Now() override;
  std::uint32_t Ticks() override;
  CivilTime Utc(std::int64_t seconds) override;
  CivilTime Local(std::int64_t seconds) override;
};

}  // namespace pw
