#include "calendar/overlap_index.h"

void OverlapIndex::Add(std::int32_t start, std::int32_t end) {
  starts.Add(start);
  if (end <= start) return;
  lastingStarts.Add(start);
  lastingEnds.Add(end);
}

void OverlapIndex::Remove(std::int32_t start, std::int32_t end) {
  starts.Remove(start);
  if (end <= start) return;
  lastingStarts.Remove(start);
  lastingEnds.Remove(end);
}

std::size_t OverlapIndex::CountOverlapping(std::int32_t start, std::int32_t end) const {
  const std::int64_t behindStart = std::int64_t{start} + 1;
  // Those that start later, but before this one ends.
  const std::size_t later =
      end > behindStart ? starts.CountBelow(end) - starts.CountBelow(behindStart) : 0;
  // Those that start by then, less those of them that have ended.
  const std::size_t around =
      lastingStarts.CountBelow(behindStart) - lastingEnds.CountBelow(behindStart);
  return later + around;
}
