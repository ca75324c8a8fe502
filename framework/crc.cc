#include "framework/crc.h"

#include "base/crc32.h"
#include "base/cursor.h"

namespace pw {

std::uint32_t FoldText(std::uint32_t crc, std::string_view text) {
  return Crc32(Crc32(crc, text), std::string_view("\0", 1));
}

std::uint32_t FoldStamp(std::uint32_t crc, const PWDateTimeStamp& stamp) {
  ByteWriter bytes;
  bytes.U16(stamp.year);
  bytes.U8(stamp.month);
  bytes.U8(stamp.day);
  bytes.U8(stamp.hour);
  bytes.U8(stamp.minute);
  bytes.U8(stamp.second);
  return Crc32(crc, bytes.Written());
}

}  // namespace pw
