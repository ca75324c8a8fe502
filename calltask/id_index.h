#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <set>
#include <string>
#include <unordered_map>
#include <utility>

namespace pw {

// Finds the first record of an id text. Records are known by their slots, which never change; many
// may share an id. Every operation takes O(log n), where n is the number of records that share
// their ids with others.
class IdIndex {
 public:
  void Reserve(std::size_t records) { firsts.reserve(records); }

  void Add(const std::string& id, std::uint32_t slot);

  // The record must be there under this id.
  void Remove(const std::string& id, std::uint32_t slot);

  // The lowest slot of that id.
  std::optional<std::uint32_t> First(const std::string& id) const;

 private:
  std::unordered_map<std::string, std::uint32_t> firsts;   // the lowest slot of each id
  std::set<std::pair<std::string, std::uint32_t>> others;  // all above it
};

}  // namespace pw
