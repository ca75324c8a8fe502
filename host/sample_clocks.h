#pragma once

#include <cstdint>
#include <string>

#include "host/outcome.h"

namespace pw {

// The eight clocks of the sample, with the cities that they need, all from this machine's zones.
struct SampleClocks {
  std::string clockFile;
  std::string cityFile;
  std::string zoneFile;
  std::string homeCity;  // the first clock's, as the city file has it
};

// Fails where this machine has no zone data. `now` is in seconds since 1970 UTC.
Outcome<SampleClocks> MakeSampleClocks(std::int64_t now);

}  // namespace pw
