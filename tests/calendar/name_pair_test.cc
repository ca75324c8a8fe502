#include "calendar/name_pair.h"

#include <gtest/gtest.h>

#include "tests/support/event_file_builder.h"

namespace {

using pw::test::PairBytes;

template <class Part>
std::string Encoded(const Part& part) {
  pw::ByteWriter out;
  part.Encode(out);
  EXPECT_EQ(part.EncodedSize(), out.Size());
  return out.Release();
}

// What is read of these bytes, written again; nothing if it can't be read. `taken` is how many
// bytes the reader counts.
template <class Part>
std::optional<std::string> Again(const std::string& bytes, std::size_t taken) {
  pw::ByteReader in(bytes);
  Part part;
  if (!part.Take(in)) return std::nullopt;
  EXPECT_EQ(in.Position(), taken);
  return Encoded(part);
}

// None of these can be read where its last byte is missing, or more.
template <class Part>
void CutAtEveryLength(const std::string& bytes) {
  for (std::size_t length = 0; length < bytes.size(); ++length) {
    EXPECT_FALSE(Again<Part>(bytes.substr(0, length), 0)) << length;
  }
}

const std::string kString(
    "\x01\x03\x00\x00\x00"
    "a\0c",
    8);
const std::string kPair = PairBytes{"L", "", {1, 0x80000000, 3}}.Build();

TEST(NamePairTest, StringsAreCounted) {
  EXPECT_EQ(Again<WMCountedString>(kString + "more", 8), kString);
  EXPECT_EQ(Again<WMCountedString>(std::string(2, '\0'), 1), std::string(1, '\0'));
  EXPECT_EQ(Again<WMCountedString>("\xFF" + kString.substr(1), 8), kString);
  EXPECT_EQ(Again<WMCountedString>(std::string("\x01\0\0\0\0", 5), 5), std::string(1, '\0'));
  EXPECT_FALSE(Again<WMCountedString>("\x01\xFF\xFF\xFF\xFFtext", 0));
  CutAtEveryLength<WMCountedString>(kString);
}

TEST(NamePairTest, APairOfEmptyTextsHasNoWords) {
  ASSERT_EQ(kPair.size(), 20U);
  EXPECT_EQ(Again<WMNamePair>(kPair + "more", 20), kPair);
  const std::string second = PairBytes{"", "xy", {4, 5, 6}}.Build();
  EXPECT_EQ(Again<WMNamePair>(second, 21), second);
  EXPECT_EQ(Again<WMNamePair>("\x80" + second.substr(1), 21), second);
  EXPECT_EQ(Again<WMNamePair>(PairBytes{"", "", {7, 8, 9}}.Build(), 15), std::string(1, '\0'));
  EXPECT_EQ(Again<WMNamePair>(std::string(2, '\0'), 1), std::string(1, '\0'));
  CutAtEveryLength<WMNamePair>(kPair);
}

TEST(NamePairTest, AListIsReadOneByteShort) {
  const std::string one = '\x01' + kPair + '\0';
  const std::string two = "\x7F" + kPair + kPair + '\0';
  EXPECT_EQ(one.size(), 22U);
  EXPECT_EQ(Again<WMNamePairList>(one, 21), one);
  EXPECT_EQ(Again<WMNamePairList>(two, 41), '\x01' + two.substr(1));
  EXPECT_EQ(Again<WMNamePairList>(std::string("\x01\0", 2), 1), std::string(1, '\0'));
  EXPECT_EQ(Again<WMNamePairList>(std::string(2, '\0'), 1), std::string(1, '\0'));
  CutAtEveryLength<WMNamePairList>(two);

  WMNamePairList list;
  list.pairs.resize(1);
  list.pairs[0].a = 7;  // isn't written without a text
  EXPECT_EQ(Encoded(list), std::string("\x01\0\0", 3));
}

}  // namespace
