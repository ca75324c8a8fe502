#pragma once

#include <array>
#include <bitset>
#include <cstddef>
#include <cstdint>
#include <map>

#include "timeplace/zone_rule.h"

namespace pw {

// The daylight bounds of every year that seconds from 1970 on reach, computed once for each rule.
class BoundsCache {
 public:
  BoundsCache() = default;
  BoundsCache(BoundsCache&&) = default;
  BoundsCache& operator=(BoundsCache&&) = default;
  BoundsCache(const BoundsCache&) = delete;
  BoundsCache& operator=(const BoundsCache&) = delete;

  // The rule that `Of` is about from now on.
  void Use(const DaylightRule& rule);
  const DaylightRule& Rule() const { return current; }

  DaylightBounds Of(std::int32_t year);

 private:
  // The years that 32 bits of seconds reach, from 1970 on.
  static constexpr std::int32_t kFirstYear = 1970;
  static constexpr std::size_t kYears = 2038 - kFirstYear + 1;
  struct Years {
    std::array<DaylightBounds, kYears> bounds;
    std::bitset<kYears> known;
  };

  // A rule's bytes.
  using Key = std::array<std::int8_t, 11>;
  static Key KeyOf(const DaylightRule& rule);

  DaylightRule current;
  Years* yearsOfCurrent = nullptr;
  std::map<Key, Years> rules;
};

}  // namespace pw
