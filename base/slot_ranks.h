#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

namespace pw {

// Ranks over slots that only ever grow at the end and lose some on the way.
//
// A store keeps its elements in slots that never move, so that an index over them stays true, while
// the engine counts without those that are deleted: rank r is the r-th slot that is left. All ranks
// and slots count from 0. As long as nothing was removed a rank is its slot and costs nothing;
// after that each operation takes O(log n).
class SlotRanks {
 public:
  explicit SlotRanks(std::size_t slots = 0) : slots(slots), left(slots) {}

  // The number of slots left.
  std::size_t Count() const { return left; }

  // Adds one slot, behind all others, and returns it.
  std::size_t Append();

  // Removes the slot of that rank. The rank must be below `Count()`.
  void Remove(std::size_t rank);

  // The slot of a rank below `Count()`.
  std::size_t SlotAt(std::size_t rank) const;

  // The number of slots left before this one: its rank, where it is still there itself.
  std::size_t RankOf(std::size_t slot) const;

 private:
  bool Dense() const { return left == slots; }
  void BuildTree();

  std::size_t slots;
  std::size_t left;
  std::vector<std::uint32_t> tree;  // Fenwick tree from index 1, empty while dense
};

}  // namespace pw
