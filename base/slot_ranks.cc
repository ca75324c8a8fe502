#include "base/slot_ranks.h"

#include <bit>

namespace pw {
namespace {

// The part of a Fenwick index that its node sums over.
constexpr std::size_t LowBit(std::size_t index) {
  return index & (~index + 1);
}

}  // namespace

std::size_t SlotRanks::Append() {
  ++slots;
  ++left;
  if (!tree.empty()) {
    // The new node sums the slots from slots - LowBit(slots) on, of which all but the last are
    // known.
    const std::size_t before = RankOf(slots - LowBit(slots));
    tree.push_back(static_cast<std::uint32_t>(left - before));
  }
  return slots - 1;
}

void SlotRanks::Remove(std::size_t rank) {
  if (tree.empty()) BuildTree();
  const std::size_t slot = SlotAt(rank);
  for (std::size_t i = slot + 1; i <= slots; i += LowBit(i)) --tree[i];
  --left;
}

std::size_t SlotRanks::SlotAt(std::size_t rank) const {
  if (Dense()) return rank;
  std::size_t slot = 0;
  for (std::size_t step = std::bit_floor(slots); step != 0; step /= 2) {
    if (slot + step <= slots && tree[slot + step] <= rank) {
      slot += step;
      rank -= tree[slot];
    }
  }
  return slot;
}

std::size_t SlotRanks::RankOf(std::size_t slot) const {
  if (Dense()) return slot;
  std::size_t rank = 0;
  for (std::size_t i = slot; i != 0; i -= LowBit(i)) rank += tree[i];
  return rank;
}

void SlotRanks::BuildTree() {
  tree.resize(slots + 1);
  for (std::size_t i = 1; i <= slots; ++i) tree[i] = static_cast<std::uint32_t>(LowBit(i));
}

}  // namespace pw
