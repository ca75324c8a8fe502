#include "calendar/item_list.h"

#include <algorithm>
#include <limits>
#include <utility>

namespace {

constexpr std::int32_t kLeast = std::numeric_limits<std::int32_t>::min();

}  // namespace

std::size_t ItemList::Append(std::unique_ptr<WMEventItem> item) {
  items.push_back(std::move(item));
  const std::size_t slot = ranks.Append();
  if (index) index->insert(EntryOf(slot));
  return Count() - 1;
}

void ItemList::Remove(std::size_t rank) {
  const std::size_t slot = ranks.SlotAt(rank);
  if (index) index->erase(EntryOf(slot));
  ranks.Remove(rank);
  items[slot].reset();
}

void ItemList::Clear() {
  items.clear();
  ranks = pw::SlotRanks();
  index.reset();
}

void ItemList::SetCreated(std::size_t rank, std::int32_t created) {
  const std::size_t slot = ranks.SlotAt(rank);
  if (index) index->erase(EntryOf(slot));
  items[slot]->SetCreated(created);
  if (index) index->insert(EntryOf(slot));
}

std::set<ItemList::Entry>& ItemList::Index() {
  if (index) return *index;
  std::vector<Entry> entries;
  entries.reserve(Count());
  for (std::size_t rank = 0; rank < Count(); ++rank) entries.push_back(EntryOf(ranks.SlotAt(rank)));
  std::sort(entries.begin(), entries.end());
  index.emplace(entries.begin(), entries.end());
  return *index;
}

std::optional<std::size_t> ItemList::Find(std::int32_t created, std::int32_t id) {
  const auto found = Index().lower_bound({created, id, 0});
  if (found == Index().end()) return std::nullopt;
  const auto [foundCreated, foundId, slot] = *found;
  if (foundCreated != created || foundId != id) return std::nullopt;
  return ranks.RankOf(slot);
}

std::vector<std::size_t> ItemList::WithCreated(std::int32_t created) {
  std::vector<std::size_t> found;
  auto entry = Index().lower_bound({created, kLeast, 0});
  for (; entry != Index().end() && std::get<0>(*entry) == created; ++entry) {
    found.push_back(ranks.RankOf(std::get<2>(*entry)));
  }
  std::sort(found.begin(), found.end());
  return found;
}
