#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "base/cursor.h"

// City files laid out field by field, apart from the codec that they test.
namespace pw::test {

struct CityBytes {
  std::string name;
  std::uint16_t left = 0;
  std::uint16_t right = 0;
  std::uint8_t zone = 1;
  bool deleted = false;
  std::string country = "Country";
};

struct CityFileBytes {
  static constexpr std::size_t kNodeSize = 202;

  std::uint16_t root = 1;
  std::vector<CityBytes> nodes;

  static std::size_t OffsetOf(std::size_t number) { return kNodeSize * number - 198; }

  // Bytes without a meaning carry a pattern of their own.
  static std::string Node(const CityBytes& city) {
    ByteWriter out;
    out.U16(city.left);
    out.U16(0x5050);
    out.U16(city.right);
    out.Padded(city.name, 26);
    out.Padded(city.country, 46);
    out.U8(city.zone);
    out.U8(0x73);
    out.U16(100);
    out.Bytes(std::string("\x01\x00\x02\x04\x00\x02\x00\x03\x04\x00\x09", 11));
    out.Bytes(std::string(105, 'u'));
    out.U16(0x4D4D);
    out.U8(city.deleted ? 1 : 0);
    out.U8(0xC3);
    return out.Release();
  }

  std::string Build() const {
    ByteWriter out;
    out.U16(root);
    out.U16(0x2222);
    for (const CityBytes& city : nodes) out.Bytes(Node(city));
    return out.Release();
  }
};

// Seven nodes, of which two are deleted: one within the tree, one at its edge.
//
//   Madrid (1) - left:  Berlin (2) - left:  Aachen (4)
//                                    right: London (5), deleted, - left: Dublin (6)
//                right: Zagreb (3) - right: "Z\xFCrich" (7), deleted
inline CityFileBytes SevenCities() {
  CityFileBytes file;
  file.nodes = {{"Madrid", 2, 3, 5},          {"Berlin", 4, 5, 5},       {"Zagreb", 0, 7, 9},
                {"Aachen", 0, 0, 5},          {"London", 6, 0, 4, true}, {"Dublin", 0, 0, 4},
                {"Z\xFCrich", 0, 0, 12, true}};
  return file;
}

}  // namespace pw::test
