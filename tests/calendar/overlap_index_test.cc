#include "calendar/overlap_index.h"

#include <limits>
#include <random>
#include <utility>
#include <vector>

#include <gtest/gtest.h>

namespace {

using Interval = std::pair<std::int32_t, std::int32_t>;

// The rule, as the organiser tells it.
bool EventsOverlap(const Interval& a, const Interval& b) {
  return a.first < b.first ? a.second > b.first : b.second > a.first;
}

// Among few moments, so that many touch, are empty or end before they start.
TEST(OverlapIndexTest, CountsAsTheRuleDoesOverAllIntervals) {
  OverlapIndex index;
  std::vector<Interval> intervals;
  std::mt19937 random(8);
  const auto moment = [&]() -> std::int32_t {
    const auto number = static_cast<std::int32_t>(random() % 14);
    if (number == 12) return std::numeric_limits<std::int32_t>::max();
    return number == 13 ? std::numeric_limits<std::int32_t>::min() : number;
  };
  for (int step = 0; step < 3000; ++step) {
    if (intervals.size() > 20) {
      const std::size_t at = random() % intervals.size();
      index.Remove(intervals[at].first, intervals[at].second);
      intervals.erase(intervals.begin() + static_cast<std::ptrdiff_t>(at));
    }
    const Interval asked(moment(), moment());
    std::size_t expected = 0;
    for (const Interval& each : intervals) expected += EventsOverlap(asked, each) ? 1 : 0;
    ASSERT_EQ(index.CountOverlapping(asked.first, asked.second), expected)
        << asked.first << " " << asked.second;
    intervals.emplace_back(moment(), moment());
    index.Add(intervals.back().first, intervals.back().second);
  }
}

}  // namespace
