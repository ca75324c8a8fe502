#include "calendar/item_list.h"

#include <random>

#include <gtest/gtest.h>

#include "platform/testing/test_platform.h"

namespace {

// The items by their keys, in order.
using Model = std::vector<std::pair<std::int32_t, std::int32_t>>;

void ExpectAlike(ItemList& list, const Model& model, std::int32_t keys) {
  ASSERT_EQ(list.Count(), model.size());
  for (std::size_t rank = 0; rank < model.size(); ++rank) {
    EXPECT_EQ(list.Item(rank).Created(), model[rank].first);
    EXPECT_EQ(list.Item(rank).Id(), model[rank].second);
  }
  for (std::int32_t created = -1; created <= keys; ++created) {
    std::vector<std::size_t> with;
    for (std::size_t rank = 0; rank < model.size(); ++rank) {
      if (model[rank].first == created) with.push_back(rank);
    }
    EXPECT_EQ(list.WithCreated(created), with) << created;
    for (std::int32_t id = -1; id <= keys; ++id) {
      const auto first = std::find(model.begin(), model.end(), std::pair(created, id));
      const auto rank = static_cast<std::size_t>(first - model.begin());
      EXPECT_EQ(list.Find(created, id).value_or(model.size()), rank) << created << " " << id;
    }
  }
}

// Few keys, so that many are alike, and lookups between the changes, so that the index follows.
TEST(ItemListTest, IsAPlainListWithLookups) {
  pw::TestPlatform platform;
  constexpr std::int32_t kKeys = 4;
  std::mt19937 random(1);
  const auto below = [&](std::size_t limit) { return static_cast<std::int32_t>(random() % limit); };
  ItemList list;
  Model model;
  for (int step = 0; step < 3000; ++step) {
    const std::int32_t kind = below(10);
    const std::size_t rank = model.empty() ? 0 : random() % model.size();
    if (kind < 5 || model.empty()) {
      auto item = std::make_unique<WMEventItem>();
      item->header.created = below(kKeys);
      item->header.id = below(kKeys) - 1;
      model.emplace_back(item->Created(), item->Id());
      EXPECT_EQ(list.Append(std::move(item)), model.size() - 1);
    } else if (kind < 8) {
      list.Remove(rank);
      model.erase(model.begin() + static_cast<std::ptrdiff_t>(rank));
    } else {
      const std::int32_t created = below(kKeys + 1);
      list.SetCreated(rank, created);
      if (created != 0) model[rank].first = created;
    }
    if (step % 1000 == 999) {
      list.Clear();
      model.clear();
    }
    if (step % 7 == 0 || step % 100 > 80) ExpectAlike(list, model, kKeys);
    ASSERT_FALSE(HasFailure()) << step;
  }
}

TEST(ItemListTest, AnItemStaysWhereItIs) {
  pw::TestPlatform platform;
  ItemList list;
  for (int i = 0; i < 3; ++i) list.Append(std::make_unique<WMEventItem>());
  const WMEventItem* last = &list.Item(2);
  list.Remove(0);
  for (int i = 0; i < 1000; ++i) list.Append(std::make_unique<WMEventItem>());
  EXPECT_EQ(&list.Item(1), last);
}

}  // namespace
