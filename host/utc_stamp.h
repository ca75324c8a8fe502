#pragma once

#include <cstdint>
#include <string>

#include "framework/values.h"
#include "platform/clock.h"

namespace pw {

// "YYYYMMDDTHHMMSSZ", the moment as calendars for other programs write it.
std::string UtcStamp(Clock& clock, std::int64_t seconds);

// The moment that the machine's own clocks showed so, in the same form: of an hour that occurs
// twice the second one, and one that is left out as if the clocks hadn't been put forward. Empty
// where the fields are no date and time.
std::string UtcStampOfLocal(Clock& clock, const PWDateTimeStamp& stamp);

}  // namespace pw
