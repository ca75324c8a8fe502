#include "host/line_reader.h"

#include <istream>

namespace pw {

LineState ReadLine(std::istream& in, std::size_t limit, std::string& line) {
  using Traits = std::istream::traits_type;
  line.clear();
  std::streambuf* buffer = in.rdbuf();
  bool any = false;
  bool tooLong = false;
  for (int c = buffer->sbumpc(); c != Traits::eof(); c = buffer->sbumpc()) {
    any = true;
    if (c == '\n') break;
    if (line.size() == limit) tooLong = true;
    if (!tooLong) line += Traits::to_char_type(c);
  }
  if (!any) return LineState::kNone;
  return tooLong ? LineState::kTooLong : LineState::kRead;
}

}  // namespace pw
