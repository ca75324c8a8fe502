#include "base/ranked_numbers.h"

#include <algorithm>
#include <iterator>
#include <utility>

namespace pw {

void RankedNumbers::Runs::Add(std::int32_t number) {
  std::vector<std::int32_t> run = {number};
  while (!runs.empty() && runs.back().size() <= run.size()) {
    std::vector<std::int32_t> merged;
    merged.reserve(run.size() + runs.back().size());
    std::merge(run.begin(), run.end(), runs.back().begin(), runs.back().end(),
               std::back_inserter(merged));
    run = std::move(merged);
    runs.pop_back();
  }
  runs.push_back(std::move(run));
}

std::size_t RankedNumbers::Runs::CountBelow(std::int64_t bound) const {
  std::size_t count = 0;
  for (const auto& run : runs) {
    count +=
        static_cast<std::size_t>(std::lower_bound(run.begin(), run.end(), bound) - run.begin());
  }
  return count;
}

std::size_t RankedNumbers::Runs::Count() const {
  std::size_t count = 0;
  for (const auto& run : runs) count += run.size();
  return count;
}

std::vector<std::int32_t> RankedNumbers::Runs::Sorted() const {
  std::vector<std::int32_t> sorted;
  for (auto run = runs.rbegin(); run != runs.rend(); ++run) {
    std::vector<std::int32_t> merged;
    merged.reserve(sorted.size() + run->size());
    std::merge(sorted.begin(), sorted.end(), run->begin(), run->end(), std::back_inserter(merged));
    sorted = std::move(merged);
  }
  return sorted;
}

void RankedNumbers::Runs::Replace(std::vector<std::int32_t> sorted) {
  runs.clear();
  if (!sorted.empty()) runs.push_back(std::move(sorted));
}

// Where more than half of what was added doesn't count any more, that is thrown out.
void RankedNumbers::Remove(std::int32_t number) {
  removed.Add(number);
  if (2 * removed.Count() <= added.Count()) return;
  const std::vector<std::int32_t> all = added.Sorted();
  const std::vector<std::int32_t> gone = removed.Sorted();
  std::vector<std::int32_t> left;
  std::set_difference(all.begin(), all.end(), gone.begin(), gone.end(), std::back_inserter(left));
  added.Replace(std::move(left));
  removed.Replace({});
}

}  // namespace pw
