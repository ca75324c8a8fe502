#pragma once

#include <cstddef>
#include <cstdint>
#include <type_traits>
#include <vector>

#include "framework/recurrence.h"

// The numbers of a pattern's present type, in the order of its members.
namespace pw::test {

using Numbers = std::vector<std::int64_t>;

template <class Visit>
void ForEachNumber(PWRecurrancePattern& pattern, Visit visit) {
  const auto visitAll = [&](auto&... numbers) { (visit(numbers), ...); };
  if (auto* its = pattern.Daily()) visitAll(its->Interval);
  if (auto* its = pattern.Weekly()) visitAll(its->Interval, its->Days.bits);
  if (auto* its = pattern.MonthlyByDate()) visitAll(its->Interval, its->Days.bits);
  if (auto* its = pattern.MonthlyByDay()) visitAll(its->Interval, its->Week, its->Day);
  if (auto* its = pattern.YearlyByDate()) visitAll(its->Month, its->Day);
  if (auto* its = pattern.YearlyByDay()) visitAll(its->Month, its->Week, its->Day);
}

inline Numbers NumbersOf(PWRecurrancePattern& pattern) {
  Numbers numbers;
  ForEachNumber(pattern, [&](auto& number) { numbers.push_back(number); });
  return numbers;
}

// Those that aren't given stay.
inline void Fill(PWRecurrancePattern& pattern, const Numbers& numbers) {
  std::size_t at = 0;
  ForEachNumber(pattern, [&](auto& number) {
    if (at == numbers.size()) return;
    number = static_cast<std::remove_reference_t<decltype(number)>>(numbers[at++]);
  });
}

}  // namespace pw::test
