#include "cardfile/title_sort.h"

#include <algorithm>
#include <cstddef>
#include <numeric>

#include "base/slot_ranks.h"
#include "base/text.h"

namespace pw::cardfile {
namespace {

// A title with its first eight bytes, folded, as one number: it decides nearly every compare.
struct Key {
  std::uint64_t prefix;
  std::uint32_t index;
};
constexpr std::size_t kPrefixSize = 8;

std::uint64_t FoldedPrefix(std::string_view title) {
  std::uint64_t prefix = 0;
  for (std::size_t i = 0; i < kPrefixSize; ++i) {
    prefix = (prefix << 8) | (i < title.size() ? AsciiLower(title[i]) : 0U);
  }
  return prefix;
}

class TitleOrder {
 public:
  explicit TitleOrder(const std::vector<std::string_view>& titles) : titles(titles) {}

  bool Less(const Key& a, const Key& b) const {
    if (a.prefix != b.prefix) return a.prefix < b.prefix;
    return CompareIgnoringCase(Rest(a), Rest(b)) < 0;
  }
  bool Equal(const Key& a, const Key& b) const {
    return a.prefix == b.prefix && EqualIgnoringCase(Rest(a), Rest(b));
  }

 private:
  // No title holds a zero byte, so that equal prefixes mean equal lengths up to their end.
  std::string_view Rest(const Key& key) const {
    const std::string_view title = titles[key.index];
    return title.substr(std::min(kPrefixSize, title.size()));
  }

  const std::vector<std::string_view>& titles;
};

bool InOrder(const std::vector<std::string_view>& titles) {
  for (std::size_t i = 1; i < titles.size(); ++i) {
    if (CompareIgnoringCase(titles[i - 1], titles[i]) > 0) return false;
  }
  return true;
}

std::vector<Key> StableOrder(const std::vector<std::string_view>& titles, const TitleOrder& order) {
  std::vector<Key> keys(titles.size());
  for (std::uint32_t i = 0; i < keys.size(); ++i) keys[i] = {FoldedPrefix(titles[i]), i};
  std::stable_sort(keys.begin(), keys.end(),
                   [&](const Key& a, const Key& b) { return order.Less(a, b); });
  return keys;
}

// Counts, for places taken one by one, how many lie before a given one.
class PlaceCounter {
 public:
  explicit PlaceCounter(std::size_t places) : tree(places + 1) {}

  void Take(std::size_t place) {
    for (std::size_t i = place + 1; i < tree.size(); i += LowBit(i)) ++tree[i];
  }
  std::size_t Before(std::size_t place) const {
    std::size_t count = 0;
    for (std::size_t i = place; i != 0; i -= LowBit(i)) count += tree[i];
    return count;
  }

 private:
  static constexpr std::size_t LowBit(std::size_t index) { return index & (~index + 1); }

  std::vector<std::uint32_t> tree;
};

// Cards of one title, e1 to em, in their first order. Let c[d] be the number of smaller titles that
// stand between e(d) and e(d+1), or behind it for the last. Each smaller title that the sort brings
// forward sends the foremost of the equal ones met so far to the back, so their order is that of a
// queue: for d = 1 to m, append e(d), then rotate the queue left by c[d].
//
// Backwards this needs no queue: e(m) has a known place in the last one, and the queue before it is
// the free places behind that one, around the end.
void PlaceEqualTitles(Key* group, const std::vector<std::size_t>& smallerBetween) {
  const std::size_t count = smallerBetween.size();
  const std::vector<Key> equal(group, group + count);
  SlotRanks freePlaces(count);
  std::size_t front = 0;  // rank of the queue's first place among the free ones
  for (std::size_t d = count; d > 0; --d) {
    const std::size_t rotation = smallerBetween[d - 1] % d;
    const std::size_t rank = (front + d - 1 - rotation) % d;
    group[freePlaces.SlotAt(rank)] = equal[d - 1];
    freePlaces.Remove(rank);
    front = d > 1 ? rank % (d - 1) : 0;
  }
}

// Gives each run of equal titles, now in its first order, the exchange sort's. Larger titles never
// matter to it.
void ReorderEqualTitles(std::vector<Key>& keys, const TitleOrder& order) {
  PlaceCounter smaller(keys.size());
  std::vector<std::size_t> between;
  std::size_t start = 0;
  while (start < keys.size()) {
    std::size_t end = start + 1;
    while (end < keys.size() && order.Equal(keys[start], keys[end])) ++end;
    const std::size_t first = start;
    start = end;
    if (end - first > 1) {
      between.clear();
      for (std::size_t i = first; i < end; ++i) {
        const std::size_t next = i + 1 < end ? smaller.Before(keys[i + 1].index) : first;
        between.push_back(next - smaller.Before(keys[i].index));
      }
    }
    for (std::size_t i = first; i < end; ++i) smaller.Take(keys[i].index);
    if (end - first > 1) PlaceEqualTitles(&keys[first], between);
  }
}

bool AnyEqual(const std::vector<Key>& keys, const TitleOrder& order) {
  for (std::size_t i = 1; i < keys.size(); ++i) {
    if (order.Equal(keys[i - 1], keys[i])) return true;
  }
  return false;
}

}  // namespace

std::vector<std::uint32_t> ExchangeSortOrder(const std::vector<std::string_view>& titles) {
  std::vector<std::uint32_t> result(titles.size());
  std::iota(result.begin(), result.end(), 0U);
  if (InOrder(titles)) return result;

  const TitleOrder order(titles);
  std::vector<Key> keys = StableOrder(titles, order);
  if (AnyEqual(keys, order)) ReorderEqualTitles(keys, order);
  for (std::size_t i = 0; i < keys.size(); ++i) result[i] = keys[i].index;
  return result;
}

}  // namespace pw::cardfile
