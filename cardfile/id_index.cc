#include "cardfile/id_index.h"

namespace pw::cardfile {

void IdIndex::Reserve(std::size_t cards) {
  runs.reserve(cards);
  links.reserve(cards);
}

void IdIndex::Add(std::int32_t id, std::uint32_t slot) {
  if (slot >= links.size()) links.resize(slot + 1);
  const auto [run, isNew] = runs.try_emplace(id, Run{slot, slot});
  if (isNew) return;
  links[slot].previous = run->second.last;
  links[run->second.last].next = slot;
  run->second.last = slot;
}

void IdIndex::Remove(std::int32_t id, std::uint32_t slot) {
  const auto run = runs.find(id);
  const auto [previous, next] = links[slot];
  if (previous != kNone) links[previous].next = next;
  if (next != kNone) links[next].previous = previous;
  if (previous == kNone && next == kNone) {
    runs.erase(run);
  } else if (previous == kNone) {
    run->second.first = next;
  } else if (next == kNone) {
    run->second.last = previous;
  }
}

std::optional<std::uint32_t> IdIndex::First(std::int32_t id) const {
  const auto run = runs.find(id);
  if (run == runs.end()) return std::nullopt;
  return run->second.first;
}

}  // namespace pw::cardfile
