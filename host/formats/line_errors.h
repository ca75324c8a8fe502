#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

namespace pw {

// What a reader found wrong with its input, in the order found.
//
// All errors are counted but only the first hundred kept, so that a file that is something else
// altogether neither fills the memory nor the screen.
class LineErrors {
 public:
  static constexpr std::size_t kMostKept = 100;

  // Lines count from 1. The text becomes "line 12: ...".
  void Add(std::size_t line, std::string_view text);

  // What tells by itself where it is.
  void Add(std::string_view text);

  // Those kept, a control character being a blank.
  const std::vector<std::string>& Texts() const { return texts; }
  std::size_t Count() const { return count; }

  // The texts, and behind them how many more there were.
  std::vector<std::string> Told() const;

 private:
  std::vector<std::string> texts;
  std::size_t count = 0;
};

// The line, from 1, of the byte at a position of a text, which counts from 1 too.
std::size_t LineOf(std::string_view text, std::size_t position);

}  // namespace pw
