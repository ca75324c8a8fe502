#pragma once

#include <cstddef>
#include <functional>
#include <string_view>

#include "timeplace/year_frame.h"

namespace pw::calltask {

// Cuts the blocks of one file into their slots.
class BlockReader {
 public:
  explicit BlockReader(std::size_t fileSize) : budget(fileSize) {}

  // Takes a record off the front of what is left of a block. False where there is no whole one.
  using Take = std::function<bool(std::string_view& rest)>;

  // Has each record of a block taken. What is behind the last slot isn't looked at. False if a
  // record can't be taken, or no more is to be read.
  bool Read(std::string_view block, const Take& take);

 private:
  frame::ReadingBudget budget;
};

}  // namespace pw::calltask
