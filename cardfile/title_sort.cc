#include "cardfile/title_sort.h"

#include <algorithm>
#include <cstddef>
#include <numeric>

#include "base/slot_ranks.h"
#include "base/text.h"

namespace pw::cardfile {
namespace {

// The first sixteen bytes of a title, folded, as two numbers: they order nearly all titles, so that
// the sort seldom goes back to the titles themselves, which lie anywhere in memory.
struct Prefix {
  std::uint64_t high = 0;
  std::uint64_t low = 0;

  friend bool operator==(const Prefix&, const Prefix&) = default;
  bool operator<(const Prefix& other) const {
    return high != other.high ? high < other.high : low < other.low;
  }
};
constexpr std::size_t kPrefixSize = sizeof(Prefix);

struct Key {
  Prefix prefix;
  std::uint32_t index;
};

std::uint64_t FoldedBytes(std::string_view title, std::size_t from) {
  std::uint64_t bytes = 0;
  for (std::size_t i = from; i < from + sizeof(bytes); ++i) {
    bytes = (bytes << 8) | (i < title.size() ? AsciiLower(title[i]) : 0U);
  }
  return bytes;
}

Prefix FoldedPrefix(std::string_view title) {
  return {FoldedBytes(title, 0), FoldedBytes(title, sizeof(std::uint64_t))};
}

// What a title has behind its prefix. No title holds a zero byte, so that the same prefix means the
// same length up to its end.
std::string_view Rest(std::string_view title) {
  return title.substr(std::min(kPrefixSize, title.size()));
}

bool InOrder(const std::vector<std::string_view>& titles) {
  for (std::size_t i = 1; i < titles.size(); ++i) {
    if (CompareIgnoringCase(titles[i - 1], titles[i]) > 0) return false;
  }
  return true;
}

// Titles in their stable order, and which of them equal the one before.
struct Sorted {
  std::vector<Key> keys;
  std::vector<bool> tied;
  bool anyTied = false;
};

// Orders keys of one prefix by the rest of their titles, and marks the ties among them. They are
// mostly of one title, or in order, which one look at each shows.
void SortRun(Sorted& sorted, std::size_t first, std::size_t end,
             const std::vector<std::string_view>& titles) {
  const auto compare = [&](const Key& a, const Key& b) {
    return CompareIgnoringCase(Rest(titles[a.index]), Rest(titles[b.index]));
  };
  bool inOrder = true;
  const auto markTies = [&] {
    for (std::size_t i = first + 1; i < end && inOrder; ++i) {
      const int order = compare(sorted.keys[i - 1], sorted.keys[i]);
      inOrder = order <= 0;
      sorted.tied[i] = order == 0;
      sorted.anyTied |= order == 0;
    }
  };
  markTies();
  if (inOrder) return;
  std::stable_sort(&sorted.keys[first], &sorted.keys[first] + (end - first),
                   [&](const Key& a, const Key& b) { return compare(a, b) < 0; });
  inOrder = true;
  markTies();
}

Sorted SortStably(const std::vector<std::string_view>& titles) {
  Sorted sorted;
  std::vector<Key>& keys = sorted.keys;
  keys.resize(titles.size());
  sorted.tied.resize(titles.size());
  for (std::uint32_t i = 0; i < keys.size(); ++i) keys[i] = {FoldedPrefix(titles[i]), i};
  std::stable_sort(keys.begin(), keys.end(),
                   [](const Key& a, const Key& b) { return a.prefix < b.prefix; });
  for (std::size_t first = 0; first < keys.size();) {
    std::size_t end = first + 1;
    while (end < keys.size() && keys[end].prefix == keys[first].prefix) ++end;
    SortRun(sorted, first, end, titles);
    first = end;
  }
  return sorted;
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
void ReorderEqualTitles(Sorted& sorted) {
  std::vector<Key>& keys = sorted.keys;
  PlaceCounter smaller(keys.size());
  std::vector<std::size_t> between;
  for (std::size_t first = 0; first < keys.size();) {
    std::size_t end = first + 1;
    while (end < keys.size() && sorted.tied[end]) ++end;
    if (end - first > 1) {
      between.clear();
      for (std::size_t i = first; i < end; ++i) {
        const std::size_t next = i + 1 < end ? smaller.Before(keys[i + 1].index) : first;
        between.push_back(next - smaller.Before(keys[i].index));
      }
    }
    for (std::size_t i = first; i < end; ++i) smaller.Take(keys[i].index);
    if (end - first > 1) PlaceEqualTitles(&keys[first], between);
    first = end;
  }
}

}  // namespace

std::vector<std::uint32_t> ExchangeSortOrder(const std::vector<std::string_view>& titles) {
  std::vector<std::uint32_t> result(titles.size());
  std::iota(result.begin(), result.end(), 0U);
  if (InOrder(titles)) return result;

  Sorted sorted = SortStably(titles);
  if (sorted.anyTied) ReorderEqualTitles(sorted);
  for (std::size_t i = 0; i < result.size(); ++i) result[i] = sorted.keys[i].index;
  return result;
}

}  // namespace pw::cardfile
