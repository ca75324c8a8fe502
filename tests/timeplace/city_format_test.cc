#include "timeplace/city_format.h"

#include <gtest/gtest.h>

namespace pw::city {
namespace {

// A node as it lies in a file.
std::string GoldenNode() {
  std::string bytes(
      "\x02\x01"               // left
      "\x04\x03"               // parent
      "\x06\x05"               // right
      "St. John's, Nfld.\0ab"  // name, 26 bytes, with what stood there before
      "\0\0\0\0\0\0",
      32);
  bytes += "Canada" + std::string(40, '\0');
  bytes += std::string(
      "\xC8"                  // zone
      "\x73"                  // carried
      "\xB6\xFE"              // offset: -330
      "\x01"                  // by weekday
      "\x00\x02\x00\x06\x03"  // starts at 2, on the first Saturday of April
      "\x01\x0B\x04\x00\x09"  // ends at 23, on the last Sunday of October
      ,
      15);
  bytes += std::string(104, 'u') + "v";
  bytes += std::string(
      "\x34\x12"  // mark
      "\xFF"      // deleted
      "\xC3"      // carried
      ,
      4);
  return bytes;
}

TEST(CityFormatTest, ANodeIsReadAndWrittenFieldByField) {
  const std::string bytes = GoldenNode();
  ASSERT_EQ(bytes.size(), kNodeSize);
  ASSERT_EQ(kNodeSize, 202U);
  ByteReader in(bytes);
  const Node node = DecodeNode(in);
  EXPECT_FALSE(in.Short());
  EXPECT_EQ(in.Remaining(), 0U);

  EXPECT_EQ(node.left, 0x0102);
  EXPECT_EQ(node.parent, 0x0304);
  EXPECT_EQ(node.right, 0x0506);
  EXPECT_EQ(node.record.Name(), "St. John's, Nfld.");
  EXPECT_EQ(node.record.Country(), "Canada");
  EXPECT_EQ(node.record.zone, 200);
  EXPECT_EQ(node.record.byte73, 0x73);
  EXPECT_EQ(node.record.offset, -330);
  EXPECT_EQ(node.record.dstMode, kDaylightByWeekday);
  EXPECT_EQ(node.record.dstStart, (WMDaylightChange{0, 2, 0, 6, 3}));
  EXPECT_EQ(node.record.dstEnd, (WMDaylightChange{1, 11, 4, 0, 9}));
  EXPECT_EQ(node.record.dstStart.HourOfDay(), 2);
  EXPECT_EQ(node.record.dstEnd.HourOfDay(), 23);
  EXPECT_EQ(node.record.unknown.front(), 'u');
  EXPECT_EQ(node.record.unknown.back(), 'v');
  EXPECT_EQ(node.record.mark, 0x1234);
  EXPECT_EQ(node.record.deleted, -1);
  EXPECT_EQ(node.record.byte195, 0xC3);

  ByteWriter out;
  EncodeNode(out, node);
  EXPECT_EQ(out.Written(), bytes);
}

TEST(CityFormatTest, TextsEndAtAZeroOrWithTheirField) {
  const struct {
    std::string text;
    std::string name;  // as it is read
    std::string country;
  } cases[] = {
      {"", "", ""},
      {"Bern", "Bern", "Bern"},
      {std::string("Be\0rn", 5), "Be", "Be"},
      {std::string(25, 'x'), std::string(25, 'x'), std::string(25, 'x')},
      {std::string(60, 'x'), std::string(25, 'x'), std::string(45, 'x')},
  };
  for (const auto& c : cases) {
    WMCityRecord record;
    record.name.fill('#');
    record.country.fill('#');
    EXPECT_EQ(record.Name(), std::string(26, '#')) << "without a zero";
    EXPECT_EQ(record.Country(), std::string(46, '#'));
    record.SetName(c.text);
    record.SetCountry(c.text);
    EXPECT_EQ(record.Name(), c.name);
    EXPECT_EQ(record.Country(), c.country);
    EXPECT_EQ(record.name.back(), '\0') << "zeros behind it";
    EXPECT_EQ(record.country.back(), '\0');
  }
}

TEST(CityFormatTest, NodesAreCountedAsTheOrganiserDoesIt) {
  EXPECT_EQ(NodeCount(3), 0);
  EXPECT_EQ(NodeCount(204), 0);
  EXPECT_EQ(NodeCount(205), 1) << "its last byte is missing";
  for (const std::uint64_t size :
       {4 + 202 * UINT64_C(65535), 4 + 202 * UINT64_C(65536), UINT64_MAX}) {
    EXPECT_EQ(NodeCount(size), 65535) << "as many as a number can name";
  }
}

// Walks a tree in the order of its names.
class TreeWalk {
 public:
  explicit TreeWalk(const std::vector<Node>& nodes) : nodes(nodes) {}

  void Visit(std::uint16_t number, std::uint16_t parent, int depth) {
    if (number == 0) return;
    ASSERT_LE(number, nodes.size());
    ASSERT_LE(depth, 16);
    const Node& node = nodes[number - 1U];
    ASSERT_EQ(node.parent, parent);
    deepest = std::max(deepest, depth);
    Visit(node.left, number, depth + 1);
    names.emplace_back(node.record.Name());
    Visit(node.right, number, depth + 1);
  }

  std::vector<std::string> names;
  int deepest = 0;

 private:
  const std::vector<Node>& nodes;
};

TEST(CityFormatTest, AWholeFileIsABalancedTree) {
  const struct {
    std::size_t cities;
    int depth;
  } cases[] = {{0, 0}, {1, 1}, {2, 2}, {3, 2}, {4, 3}, {7, 3}, {8, 4}, {100, 7}, {65535, 16}};
  for (const auto& c : cases) {
    std::vector<WMCityRecord> cities(c.cities);
    std::vector<std::string> names;
    for (std::size_t i = 0; i < c.cities; ++i) {
      names.push_back(std::to_string(100000 + i));
      cities[i].SetName(names.back());
    }
    const std::string bytes = EncodeCityFile(cities);
    ASSERT_EQ(bytes.size(), 4 + 202 * c.cities);
    ByteReader in(bytes);
    const Header header = DecodeHeader(in);
    std::vector<Node> nodes;
    while (in.Remaining() > 0) nodes.push_back(DecodeNode(in));
    TreeWalk walk(nodes);
    walk.Visit(header.root, 0, 1);
    EXPECT_EQ(walk.names, names) << c.cities;
    EXPECT_EQ(walk.deepest, c.depth) << c.cities;
  }
}

}  // namespace
}  // namespace pw::city
