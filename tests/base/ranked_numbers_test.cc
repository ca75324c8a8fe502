#include "base/ranked_numbers.h"

#include <limits>
#include <random>
#include <set>

#include <gtest/gtest.h>

namespace {

TEST(RankedNumbersTest, CountsWhatIsBelowWhateverComesAndGoes) {
  pw::RankedNumbers numbers;
  std::multiset<std::int32_t> expected;
  std::mt19937 random(3);
  for (int step = 0; step < 4000; ++step) {
    const auto number = static_cast<std::int32_t>(random() % 50) - 25;
    const bool removes = random() % 100 < (step < 2000 ? 30U : 60U);
    const auto known = expected.find(number);
    if (removes && known != expected.end()) {
      numbers.Remove(number);
      expected.erase(known);
    } else if (!removes) {
      numbers.Add(number);
      expected.insert(number);
    }
    const auto bound = static_cast<std::int32_t>(random() % 60) - 30;
    const auto below = std::distance(expected.begin(), expected.lower_bound(bound));
    ASSERT_EQ(numbers.CountBelow(bound), static_cast<std::size_t>(below)) << step;
  }
  numbers.Add(std::numeric_limits<std::int32_t>::max());
  EXPECT_EQ(numbers.CountBelow(std::int64_t{1} << 31), expected.size() + 1);
}

}  // namespace
