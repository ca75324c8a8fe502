#include "framework/object.h"

#include "base/cursor.h"

PWArchive& PWArchive::operator<<(std::int32_t value) {
  pw::ByteWriter writer;
  writer.I32(value);
  bytes += writer.Written();
  return *this;
}

PWArchive& PWArchive::operator>>(std::int32_t& value) {
  pw::ByteReader reader(bytes);
  reader.Seek(position);
  value = reader.I32();
  position = reader.Position();
  return *this;
}
