#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <set>
#include <tuple>
#include <vector>

#include "base/slot_ranks.h"
#include "calendar/event_item.h"
#include "calendar/overlap_index.h"

// Items in an order, by ranks from 0, which it owns. Everything takes O(log n), but for counting
// overlaps, which takes O(log² n), and an index that is built when something is first looked up.
class ItemList {
 public:
  std::size_t Count() const { return ranks.Count(); }

  // A rank below the count is asked of all that take one. An item stays where it is in memory until
  // it is removed.
  const WMEventItem& Item(std::size_t rank) const { return *items[ranks.SlotAt(rank)]; }

  // The item's rank, which is the last now.
  std::size_t Append(std::unique_ptr<WMEventItem> item);

  void Remove(std::size_t rank);
  void Clear();

  // The only way to change an item that is in the list.
  using ChangeItem = std::function<void(WMEventItem& item)>;
  void Change(std::size_t rank, const ChangeItem& change);

  // An item's key, changed unless it is 0.
  void SetCreated(std::size_t rank, std::int32_t created);

  // The first item of that key.
  std::optional<std::size_t> Find(std::int32_t created, std::int32_t id);

  // All with that `created`, which are the occurrences of the series of that key, in their order.
  std::vector<std::size_t> WithCreated(std::int32_t created);

  // How many items share time with the interval; see `OverlapIndex`.
  std::size_t CountOverlapping(std::int32_t start, std::int32_t end);

 private:
  // A key, and the slot of an item that has it.
  using Entry = std::tuple<std::int32_t, std::int32_t, std::size_t>;

  Entry EntryOf(std::size_t slot) const {
    return {items[slot]->Created(), items[slot]->Id(), slot};
  }
  std::set<Entry>& Index();
  void AddToIndexes(std::size_t slot);
  void RemoveFromIndexes(std::size_t slot);

  std::vector<std::unique_ptr<WMEventItem>> items;  // by slot; null where one was removed
  pw::SlotRanks ranks;
  std::optional<std::set<Entry>> index;
  std::optional<OverlapIndex> times;
};
