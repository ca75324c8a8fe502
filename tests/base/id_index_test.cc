#include "base/id_index.h"

#include <map>
#include <random>
#include <set>

#include <gtest/gtest.h>

namespace {

// Against a plain map of sets, with ids that many records share, and digests that ids share.
TEST(IdIndexTest, TheFirstOfAnIdIsFoundWhateverComesAndGoes) {
  pw::IdIndex index;
  std::map<std::uint64_t, std::set<std::uint32_t>> expected;
  std::map<std::uint32_t, std::uint64_t> idOf;
  const auto digestOf = [](std::uint64_t id) { return id / 2; };
  std::mt19937 random(6);
  for (int step = 0; step < 5000; ++step) {
    const auto slot = static_cast<std::uint32_t>(random() % 60);
    const std::uint64_t id = random() % 9;
    const auto known = idOf.find(slot);
    if (known != idOf.end()) {
      index.Remove(digestOf(known->second), slot);
      expected[known->second].erase(slot);
      idOf.erase(known);
    } else {
      index.Add(digestOf(id), slot);
      expected[id].insert(slot);
      idOf[slot] = id;
    }
    for (const auto& [wanted, slots] : expected) {
      const auto first = slots.empty() ? std::nullopt : std::optional(*slots.begin());
      const auto found = index.First(digestOf(wanted), [&, wanted = wanted](std::uint32_t at) {
        return idOf.at(at) == wanted;
      });
      ASSERT_EQ(found, first) << step;
    }
  }
}

}  // namespace
