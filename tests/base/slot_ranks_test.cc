#include "base/slot_ranks.h"

#include <algorithm>
#include <random>
#include <vector>

#include <gtest/gtest.h>

namespace pw {
namespace {

// Against a plain list of the slots that are left.
TEST(SlotRanksTest, FollowsAListThroughRandomChanges) {
  std::mt19937 random(1);
  for (const std::size_t start : {0U, 1U, 7U, 64U, 100U}) {
    SlotRanks ranks(start);
    std::vector<std::size_t> left;
    for (std::size_t i = 0; i < start; ++i) left.push_back(i);
    std::size_t slots = start;
    for (int step = 0; step < 400; ++step) {
      if (left.empty() || random() % 3 == 0) {
        ASSERT_EQ(ranks.Append(), slots);
        left.push_back(slots++);
      } else {
        const std::size_t rank = random() % left.size();
        ranks.Remove(rank);
        left.erase(left.begin() + static_cast<std::ptrdiff_t>(rank));
      }
      ASSERT_EQ(ranks.Count(), left.size());
      for (std::size_t rank = 0; rank < left.size(); ++rank) {
        ASSERT_EQ(ranks.SlotAt(rank), left[rank]);
        ASSERT_EQ(ranks.RankOf(left[rank]), rank);
      }
    }
  }
}

}  // namespace
}  // namespace pw
