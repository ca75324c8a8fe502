#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

#include "base/cursor.h"

// The parts of a stored item that have no fixed size. Each is put together so that its size is
// known before it is written.
//
//   string := 0 | 1 length:4 byte{length}
//   pair   := 0 | not-0 string string a:4 b:4 c:4
//   list   := 0 | not-0 pair* 0
//
// `Take` reads one off a cursor; false if it doesn't end within the bytes, or an allocation beyond
// them would be needed.

struct WMCountedString {
  std::string text;

  bool Take(pw::ByteReader& in);
  void Encode(pw::ByteWriter& out) const;
  std::size_t EncodedSize() const;
};

// A pair of two empty texts has no words either, once it was written.
struct WMNamePair {
  WMCountedString first;
  WMCountedString second;
  std::uint32_t a = 0;
  std::uint32_t b = 0;
  std::uint32_t c = 0;

  bool Take(pw::ByteReader& in);
  void Encode(pw::ByteWriter& out) const;
  std::size_t EncodedSize() const;

 private:
  bool IsEmpty() const { return first.text.empty() && second.text.empty(); }
};

// A pair of two empty texts ends the list for a reader.
struct WMNamePairList {
  std::vector<WMNamePair> pairs;

  // The organiser doesn't count the byte that opens a list, and so leaves the cursor one byte
  // before its end, unless the list is empty: whatever reads on reads from there.
  bool Take(pw::ByteReader& in);
  void Encode(pw::ByteWriter& out) const;
  std::size_t EncodedSize() const;
};
