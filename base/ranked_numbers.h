#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

namespace pw {

// Numbers, each any number of times, that tell how many of them are below a bound.
//
// They stand in sorted runs, of which each is shorter than the one before: a new number is a run of
// one, and runs of one length become one. So an operation takes O(log n) amortised, and the count
// one search in each of at most log n runs. A removed number stays, with one more in the runs of
// those that don't count.
class RankedNumbers {
 public:
  void Add(std::int32_t number) { added.Add(number); }

  // The number must be there.
  void Remove(std::int32_t number);

  std::size_t CountBelow(std::int64_t bound) const {
    return added.CountBelow(bound) - removed.CountBelow(bound);
  }

 private:
  class Runs {
   public:
    void Add(std::int32_t number);
    std::size_t CountBelow(std::int64_t bound) const;
    std::size_t Count() const;
    std::vector<std::int32_t> Sorted() const;
    void Replace(std::vector<std::int32_t> sorted);

   private:
    std::vector<std::vector<std::int32_t>> runs;  // by falling length
  };

  Runs added;
  Runs removed;
};

}  // namespace pw
