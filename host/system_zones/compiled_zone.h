#pragma once

#include <cstdint>
#include <optional>
#include <string_view>
#include <vector>

#include "host/system_zones/rule_line.h"

namespace pw {

// What a compiled zone file of this machine says of a zone's clocks. Offsets are seconds to add to
// UTC.
struct CompiledZone {
  struct Change {
    std::int64_t at = 0;  // seconds since 1970 UTC
    std::int32_t offset = 0;
  };

  std::int32_t firstOffset = 0;  // before all changes
  std::vector<Change> changes;   // in ascending order
  RuleLine rule;                 // from the last change on
};

// Reads the 64-bit part of a file and its rule line. Nothing if it is damaged, lacks one of the two
// (as the oldest version does), or counts leap seconds, which the organiser doesn't.
std::optional<CompiledZone> ParseCompiledZone(std::string_view bytes);

// The offset at a moment.
std::int32_t OffsetAt(const CompiledZone& zone, std::int32_t utc);

}  // namespace pw
