#pragma once

#include <cstdint>
#include <string>

namespace pw::test {

// A number in so many bytes, the lowest first.
inline std::string Word(std::int64_t value, int width) {
  std::string bytes;
  for (int i = 0; i < width; ++i) {
    bytes.push_back(static_cast<char>(static_cast<std::uint64_t>(value) >> (8 * i)));
  }
  return bytes;
}

}  // namespace pw::test
