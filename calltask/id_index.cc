#include "calltask/id_index.h"

#include <algorithm>

namespace pw {

void IdIndex::Add(std::uint64_t digest, std::uint32_t slot) {
  const auto [found, isNew] = firsts.try_emplace(digest, slot);
  if (isNew) return;
  std::uint32_t& first = found->second;
  others.emplace(digest, std::max(first, slot));
  first = std::min(first, slot);
}

void IdIndex::Remove(std::uint64_t digest, std::uint32_t slot) {
  const auto found = firsts.find(digest);
  if (slot != found->second) {
    others.erase({digest, slot});
    return;
  }
  const auto next = others.lower_bound({digest, 0});
  if (next != others.end() && next->first == digest) {
    found->second = next->second;
    others.erase(next);
  } else {
    firsts.erase(found);
  }
}

std::optional<std::uint32_t> IdIndex::First(std::uint64_t digest, const HasId& hasId) const {
  const auto found = firsts.find(digest);
  if (found == firsts.end()) return std::nullopt;
  if (hasId(found->second)) return found->second;
  auto next = others.lower_bound({digest, 0});
  for (; next != others.end() && next->first == digest; ++next) {
    if (hasId(next->second)) return next->second;
  }
  return std::nullopt;
}

}  // namespace pw
