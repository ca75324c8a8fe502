#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <optional>
#include <set>
#include <unordered_map>
#include <utility>

namespace pw {

// Finds the first record of an id. Ids are known by 64-bit digests, which different ids should not
// share, though they may; records by their slots, which never change. Many records may have one id.
// Every operation takes O(log n), where n is the number of records that share their digests with
// others, unless different ids share one.
class IdIndex {
 public:
  void Reserve(std::size_t records) { firsts.reserve(records); }

  void Add(std::uint64_t digest, std::uint32_t slot);

  // The record must be there under this digest.
  void Remove(std::uint64_t digest, std::uint32_t slot);

  // The lowest slot of that digest whose record has the id that is looked for.
  using HasId = std::function<bool(std::uint32_t slot)>;
  std::optional<std::uint32_t> First(std::uint64_t digest, const HasId& hasId) const;

 private:
  std::unordered_map<std::uint64_t, std::uint32_t> firsts;   // the lowest slot of each digest
  std::set<std::pair<std::uint64_t, std::uint32_t>> others;  // all above it
};

}  // namespace pw
