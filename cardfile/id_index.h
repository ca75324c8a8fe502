#pragma once

#include <cstdint>
#include <optional>
#include <unordered_map>
#include <vector>

namespace pw::cardfile {

// Finds cards by their id. Cards are known by their slot, which never changes; the slots added come
// in rising order. A damaged or foreign file may give one id to many cards, of which the first
// counts. Every operation takes constant time.
class IdIndex {
 public:
  void Reserve(std::size_t cards);

  void Add(std::int32_t id, std::uint32_t slot);

  // The card must be there.
  void Remove(std::int32_t id, std::uint32_t slot);

  // The lowest slot with that id.
  std::optional<std::uint32_t> First(std::int32_t id) const;

 private:
  static constexpr std::uint32_t kNone = UINT32_MAX;

  // The cards of one id are a list through their slots.
  struct Run {
    std::uint32_t first;
    std::uint32_t last;
  };
  struct Link {
    std::uint32_t previous = kNone;
    std::uint32_t next = kNone;
  };

  std::unordered_map<std::int32_t, Run> runs;
  std::vector<Link> links;  // by slot
};

}  // namespace pw::cardfile
