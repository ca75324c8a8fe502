#pragma once

#include <cstdint>
#include <string_view>
#include <vector>

namespace pw::cardfile {

// The order that the organiser's exchange sort leaves cards in: for i from 0, for each j above i,
// swap i and j if title i is greater than title j, letter case ignored. Equal titles never swap
// with each other, but swaps around them move them, so the sort isn't stable, and cards of one
// title come out in an order of their own.
//
// Gives, for each place of the result, the number of the title that stands there. Takes O(n log n)
// time, and n - 1 compares where the titles are in order already.
std::vector<std::uint32_t> ExchangeSortOrder(const std::vector<std::string_view>& titles);

}  // namespace pw::cardfile
