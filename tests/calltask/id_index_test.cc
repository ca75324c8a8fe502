#include "calltask/id_index.h"

#include <map>
#include <random>
#include <set>

#include <gtest/gtest.h>

namespace {

// Against a plain map of sets, with ids that many records share.
TEST(IdIndexTest, TheFirstOfAnIdIsFoundWhateverComesAndGoes) {
  pw::IdIndex index;
  std::map<std::string, std::set<std::uint32_t>> expected;
  std::map<std::uint32_t, std::string> idOf;
  std::mt19937 random(6);
  for (int step = 0; step < 5000; ++step) {
    const auto slot = static_cast<std::uint32_t>(random() % 60);
    const std::string id = "id " + std::to_string(random() % 7);
    const auto known = idOf.find(slot);
    if (known != idOf.end()) {
      index.Remove(known->second, slot);
      expected[known->second].erase(slot);
      idOf.erase(known);
    } else {
      index.Add(id, slot);
      expected[id].insert(slot);
      idOf[slot] = id;
    }
    for (const auto& [text, slots] : expected) {
      const auto first = slots.empty() ? std::nullopt : std::optional(*slots.begin());
      ASSERT_EQ(index.First(text), first) << step;
    }
  }
}

}  // namespace
