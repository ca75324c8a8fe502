#include "timeplace/place_format.h"

#include <algorithm>

#include "base/cursor.h"
#include "base/text.h"

namespace pw::places {

PlaceFile Decode(std::string_view bytes) {
  ByteReader in(bytes);
  PlaceFile file;
  file.hasMagic = in.Take(kMagic.size()) == kMagic;
  if (!file.hasMagic) return file;
  file.count = in.U32();
  const std::size_t there = std::min<std::size_t>(file.count, in.Remaining() / kEntrySize);
  file.places.reserve(there);
  for (std::size_t i = 0; i < there; ++i) {
    file.places.emplace_back(UpToZero(in.Take(kEntrySize)));
  }
  return file;
}

std::string Encode(const std::vector<std::string>& places) {
  ByteWriter out;
  out.Reserve(kHeaderSize + places.size() * kEntrySize);
  out.Bytes(kMagic);
  out.U32(static_cast<std::uint32_t>(places.size()));
  for (const std::string& place : places) {
    out.Padded(std::string_view(place).substr(0, kLongestPlace), kEntrySize);
  }
  return out.Release();
}

}  // namespace pw::places
