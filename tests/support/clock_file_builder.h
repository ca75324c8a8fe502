#pragma once

#include <cstddef>
#include <string>

namespace pw::test {

inline constexpr std::size_t kClockSize = 152;

// A clock as it lies in the file, its unused bytes filled, its flags' values not those of a save.
inline std::string Clock(const std::string& city, const std::string& country, bool active,
                         bool home) {
  std::string bytes(kClockSize, 'x');
  bytes.replace(0, city.size() + 1, city.c_str(), city.size() + 1);
  bytes.replace(26, country.size() + 1, country.c_str(), country.size() + 1);
  bytes.replace(62, 6, "label\0", 6);
  bytes.replace(128, 4, active ? std::string(4, '\0') : std::string("\x05\0\0\0", 4));
  bytes.replace(132, 4, home ? std::string(4, '\0') : std::string("\0\0\0\x80", 4));
  return bytes;
}

}  // namespace pw::test
