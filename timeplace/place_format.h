#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

// The bytes of the place list, "Place List.dat".
//
//   file := header entry{n}
//
//   offset       width  field    meaning
//   0            6      magic    "WMW400", without a zero
//   6            4      count    the number n of entries, little-endian
//   10 + 64 * i  64     entry    text of at most 63 characters, zeros behind it
namespace pw::places {

inline constexpr std::string_view kMagic = "WMW400";
inline constexpr std::size_t kHeaderSize = 6 + 4;
inline constexpr std::size_t kEntrySize = 64;
inline constexpr std::size_t kLongestPlace = kEntrySize - 1;

struct PlaceFile {
  bool hasMagic = false;
  std::uint32_t count = 0;          // as the header says
  std::vector<std::string> places;  // as many of them as are there
};

PlaceFile Decode(std::string_view bytes);

// Longer texts are cut.
std::string Encode(const std::vector<std::string>& places);

}  // namespace pw::places
