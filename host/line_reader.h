#pragma once

#include <cstddef>
#include <iosfwd>
#include <string>

namespace pw {

enum class LineState {
  kRead,
  kTooLong,  // and was passed over to its end
  kNone,     // the input has ended
};

// The next line without its end, which the last one may lack. Never holds more than `limit` bytes.
LineState ReadLine(std::istream& in, std::size_t limit, std::string& line);

}  // namespace pw
