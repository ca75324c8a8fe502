#include "host/import/series_keys.h"

#include <cstdint>
#include <vector>

#include <gtest/gtest.h>

namespace pw {
namespace {

TEST(SeriesKeys, FindsTheFirstRowOfFreeOnes) {
  const struct {
    std::vector<std::int64_t> taken;
    std::size_t count;
    std::int64_t first;
  } cases[] = {
      {{}, 5, 100},
      {{-7, 99}, 5, 100},              // all before now
      {{102, 100, 101, 101}, 5, 103},  // those of a run a moment ago
      {{100, 104, 110}, 3, 101},       // the gap is wide enough
      {{100, 104, 110}, 4, 105},
      {{0x7FFFFFFF}, 5, 100},  // far ahead
  };
  for (const auto& each : cases) {
    EXPECT_EQ(FirstFreeKey(each.taken, 100, each.count), each.first) << each.first;
  }
}

}  // namespace
}  // namespace pw
