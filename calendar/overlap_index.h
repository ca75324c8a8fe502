#pragma once

#include <cstddef>
#include <cstdint>

#include "base/ranked_numbers.h"

// Intervals of time, each from its start to its end in seconds, that tell how many of them overlap
// another one. Of two intervals the end of the one that starts earlier must be above the start of
// the other; where both start at once, or the other one starts earlier, it is that one's end. So
// those that touch don't overlap, and one that ends at or before its start overlaps only what
// starts within it or surrounds its start.
//
// Every operation takes O(log n), counting O(log² n).
class OverlapIndex {
 public:
  void Add(std::int32_t start, std::int32_t end);

  // The interval must be there.
  void Remove(std::int32_t start, std::int32_t end);

  std::size_t CountOverlapping(std::int32_t start, std::int32_t end) const;

 private:
  pw::RankedNumbers starts;

  // Of the intervals that end behind their start.
  pw::RankedNumbers lastingStarts;
  pw::RankedNumbers lastingEnds;
};
