#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <set>
#include <string>
#include <utility>
#include <vector>

#include "base/slot_ranks.h"
#include "calendar/data_format.h"

namespace pw::datafile {

// The records of one kind in their order, known by their indices from 0, or by their id texts.
//
// With n records ever appended, as a removed one leaves its place behind until the last one goes,
// an operation takes O(log n), and where ids are looked up as many comparisons of them. But the
// first removal takes O(n), as an append may that makes the list move; `InOrder` and the first
// `Find` in a version, which makes all ids, take O(n log n).
template <class Day>
class DataList {
 public:
  std::uint32_t Count() const { return static_cast<std::uint32_t>(ranks.Count()); }

  // The index must be below the count, here and in what follows.
  const Day& At(std::uint32_t index) const { return days[ranks.SlotAt(index)]; }

  void Append(const Day& day) {
    days.push_back(day);
    AddId(ranks.Append());
  }

  void Replace(std::uint32_t index, const Day& day) {
    const std::size_t slot = ranks.SlotAt(index);
    RemoveId(slot);
    days[slot] = day;
    AddId(slot);
  }

  void Remove(std::uint32_t index) {
    RemoveId(ranks.SlotAt(index));
    ranks.Remove(index);
    if (Count() == 0) *this = DataList();
  }

  // Index of the first record that has this id text in that version.
  std::optional<std::uint32_t> Find(const std::string& id, FormatVersion version) {
    if (!slotsById || indexed != version) BuildIndex(version);
    const auto found = slotsById->lower_bound({id, 0});
    if (found == slotsById->end() || found->first != id) return std::nullopt;
    return static_cast<std::uint32_t>(ranks.RankOf(found->second));
  }

  std::vector<Day> InOrder() const {
    std::vector<Day> result;
    result.reserve(Count());
    for (std::uint32_t i = 0; i < Count(); ++i) result.push_back(At(i));
    return result;
  }

 private:
  void BuildIndex(FormatVersion version) {
    indexed = version;
    slotsById.emplace();
    for (std::uint32_t i = 0; i < Count(); ++i) AddId(ranks.SlotAt(i));
  }

  void AddId(std::size_t slot) {
    if (slotsById) slotsById->emplace(IdText(days[slot], indexed), slot);
  }
  void RemoveId(std::size_t slot) {
    if (slotsById) slotsById->erase({IdText(days[slot], indexed), slot});
  }

  std::vector<Day> days;  // by slot; that of a removed record stays
  SlotRanks ranks;
  std::optional<std::set<std::pair<std::string, std::size_t>>> slotsById;  // built on first need
  FormatVersion indexed{};
};

}  // namespace pw::datafile
