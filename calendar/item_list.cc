#include "calendar/item_list.h"

#include <algorithm>
#include <limits>
#include <utility>

namespace {

constexpr std::int32_t kLeast = std::numeric_limits<std::int32_t>::min();

}  // namespace

std::size_t ItemList::Append(std::unique_ptr<WMEventItem> item) {
  items.push_back(std::move(item));
  AddToIndexes(ranks.Append());
  return Count() - 1;
}

void ItemList::Remove(std::size_t rank) {
  const std::size_t slot = ranks.SlotAt(rank);
  RemoveFromIndexes(slot);
  ranks.Remove(rank);
  items[slot].reset();
  if (Count() == 0) Clear();
}

void ItemList::Clear() {
  items.clear();
  ranks = pw::SlotRanks();
  index.reset();
  times.reset();
}

void ItemList::Change(std::size_t rank, const ChangeItem& change) {
  const std::size_t slot = ranks.SlotAt(rank);
  RemoveFromIndexes(slot);
  change(*items[slot]);
  AddToIndexes(slot);
}

void ItemList::SetCreated(std::size_t rank, std::int32_t created) {
  Change(rank, [&](WMEventItem& item) { item.SetCreated(created); });
}

void ItemList::AddToIndexes(std::size_t slot) {
  if (index) index->insert(EntryOf(slot));
  if (times) times->Add(items[slot]->Start(), items[slot]->End());
}

void ItemList::RemoveFromIndexes(std::size_t slot) {
  if (index) index->erase(EntryOf(slot));
  if (times) times->Remove(items[slot]->Start(), items[slot]->End());
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

std::size_t ItemList::CountOverlapping(std::int32_t start, std::int32_t end) {
  if (!times) {
    times.emplace();
    for (std::size_t rank = 0; rank < Count(); ++rank) {
      times->Add(Item(rank).Start(), Item(rank).End());
    }
  }
  return times->CountOverlapping(start, end);
}
