#pragma once

#include <cstddef>
#include <string>

#include <gtest/gtest.h>

// What can become of a file's bytes. Each walk ends with the first failure, and says where it was.
namespace pw::test {

// Every beginning that is shorter than the whole.
template <class Use>
void ForEachCut(const std::string& whole, Use use, std::size_t from = 0) {
  for (std::size_t length = from; length < whole.size(); ++length) {
    use(whole.substr(0, length));
    if (!testing::Test::HasFailure()) continue;
    ADD_FAILURE() << "cut to " << length << " bytes";
    return;
  }
}

// Every byte changed in all bits, the lowest and the highest.
template <class Use>
void ForEachFlip(const std::string& whole, Use use, std::size_t from = 0) {
  for (std::size_t at = from; at < whole.size(); ++at) {
    for (const unsigned char mask : {0xFF, 0x01, 0x80}) {
      std::string damaged = whole;
      damaged[at] = static_cast<char>(damaged[at] ^ mask);
      use(damaged, at);
      if (!testing::Test::HasFailure()) continue;
      ADD_FAILURE() << "byte " << at << " changed by " << int{mask};
      return;
    }
  }
}

}  // namespace pw::test
