#include "base/cursor.h"

namespace pw {

void ByteWriter::Padded(std::string_view text, std::size_t width) {
  const std::string_view kept = text.substr(0, width);
  out.append(kept);
  out.append(width - kept.size(), '\0');
}

}  // namespace pw
