#include "base/cursor.h"

#include <algorithm>

namespace pw {

std::string_view ByteReader::Take(std::size_t count) {
  if (count > Remaining()) wasShort = true;
  const std::string_view taken = bytes.substr(position, count);
  position += taken.size();
  return taken;
}

void ByteReader::Seek(std::size_t offset) {
  position = std::min(offset, bytes.size());
}

std::uint32_t ByteReader::Number(std::size_t width) {
  if (width > Remaining()) {
    wasShort = true;
    position = bytes.size();
    return 0;
  }
  std::uint32_t value = 0;
  for (std::size_t i = 0; i < width; ++i) {
    const auto byte = static_cast<std::uint8_t>(bytes[position + i]);
    value |= static_cast<std::uint32_t>(byte) << (8 * i);
  }
  position += width;
  return value;
}

void ByteWriter::Padded(std::string_view text, std::size_t width) {
  const std::string_view kept = text.substr(0, width);
  out.append(kept);
  out.append(width - kept.size(), '\0');
}

void ByteWriter::Number(std::uint32_t value, std::size_t width) {
  char bytes[sizeof value];
  for (std::size_t i = 0; i < width; ++i) bytes[i] = static_cast<char>(value >> (8 * i) & 0xFF);
  out.append(bytes, width);
}

}  // namespace pw
