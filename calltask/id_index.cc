#include "calltask/id_index.h"

#include <algorithm>

namespace pw {

void IdIndex::Add(const std::string& id, std::uint32_t slot) {
  const auto [found, isNew] = firsts.try_emplace(id, slot);
  if (isNew) return;
  std::uint32_t& first = found->second;
  others.emplace(id, std::max(first, slot));
  first = std::min(first, slot);
}

void IdIndex::Remove(const std::string& id, std::uint32_t slot) {
  const auto found = firsts.find(id);
  if (slot != found->second) {
    others.erase({id, slot});
    return;
  }
  const auto next = others.lower_bound({id, 0});
  if (next != others.end() && next->first == id) {
    found->second = next->second;
    others.erase(next);
  } else {
    firsts.erase(found);
  }
}

std::optional<std::uint32_t> IdIndex::First(const std::string& id) const {
  const auto found = firsts.find(id);
  if (found == firsts.end()) return std::nullopt;
  return found->second;
}

}  // namespace pw
