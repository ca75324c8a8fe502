#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <optional>
#include <set>
#include <unordered_map>
#include <utility>

namespace pw {

// Finds the first slot of an id. Ids are known by 64-bit numbers: by themselves, or by digests that
// different ids should not share, though they may. Records are known by their slots, which never
// change; many may have one id, as damaged and foreign files have it. Every operation takes
// O(log n), where n is the number of records that share their number with others, unless different
// ids share one.
class IdIndex {
 public:
  void Reserve(std::size_t records) { firsts.reserve(records); }

  void Add(std::uint64_t number, std::uint32_t slot);

  // The record must be there under this number.
  void Remove(std::uint64_t number, std::uint32_t slot);

  // The lowest slot of that number; with `hasId`, the lowest whose record has the id that is looked
  // for.
  std::optional<std::uint32_t> First(std::uint64_t number) const;
  using HasId = std::function<bool(std::uint32_t slot)>;
  std::optional<std::uint32_t> First(std::uint64_t number, const HasId& hasId) const;

 private:
  std::unordered_map<std::uint64_t, std::uint32_t> firsts;   // the lowest slot of each number
  std::set<std::pair<std::uint64_t, std::uint32_t>> others;  // all above it
};

}  // namespace pw
