#include "base/id_index.h"

#include <algorithm>

namespace pw {

void IdIndex::Add(std::uint64_t number, std::uint32_t slot) {
  const auto [found, isNew] = firsts.try_emplace(number, slot);
  if (isNew) return;
  std::uint32_t& first = found->second;
  others.emplace(number, std::max(first, slot));
  first = std::min(first, slot);
}

void IdIndex::Remove(std::uint64_t number, std::uint32_t slot) {
  const auto found = firsts.find(number);
  if (slot != found->second) {
    others.erase({number, slot});
    return;
  }
  const auto next = others.lower_bound({number, 0});
  if (next != others.end() && next->first == number) {
    found->second = next->second;
    others.erase(next);
  } else {
    firsts.erase(found);
  }
}

std::optional<std::uint32_t> IdIndex::First(std::uint64_t number) const {
  const auto found = firsts.find(number);
  if (found == firsts.end()) return std::nullopt;
  return found->second;
}

std::optional<std::uint32_t> IdIndex::First(std::uint64_t number, const HasId& hasId) const {
  const auto found = firsts.find(number);
  if (found == firsts.end()) return std::nullopt;
  if (hasId(found->second)) return found->second;
  auto next = others.lower_bound({number, 0});
  for (; next != others.end() && next->first == number; ++next) {
    if (hasId(next->second)) return next->second;
  }
  return std::nullopt;
}

}  // namespace pw
