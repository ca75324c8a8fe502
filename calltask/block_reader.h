#pragma once

#include <cstddef>
#include <functional>
#include <string_view>

namespace pw::calltask {

// Cuts the blocks of one file into their slots.
//
// The blocks of a whole file don't overlap, so that reading them all is reading the file once. A
// damaged file may name the same bytes for every day of a hundred years: when twice its length has
// been read no further block is.
class BlockReader {
 public:
  explicit BlockReader(std::size_t fileSize) : bytesLeft(2 * fileSize) {}

  // Takes a record off the front of what is left of a block. False where there is no whole one.
  using Take = std::function<bool(std::string_view& rest)>;

  // Has each record of a block taken. What is behind the last slot isn't looked at. False if a
  // record can't be taken, or no more is to be read.
  bool Read(std::string_view block, const Take& take);

 private:
  std::size_t bytesLeft;
};

}  // namespace pw::calltask
