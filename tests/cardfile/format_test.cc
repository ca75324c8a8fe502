#include "cardfile/format.h"

#include <gtest/gtest.h>

#include "cardfile/new_file.h"
#include "tests/support/card_file_builder.h"

namespace pw::cardfile {
namespace {

TEST(CardFileFormatTest, KeyLinesPartAtTheFirstTwoCommas) {
  const struct {
    std::string line;
    std::array<std::string, 3> keys;
  } cases[] = {
      {"", {"", "", ""}},
      {"Last Name", {"Last Name", "", ""}},
      {"Last Name, First Name", {"Last Name", "First Name", ""}},
      {"A,B,C", {"A", "B", "C"}},
      {"A,  \t\r\nB, C, D,E", {"A", "B", "C, D,E"}},
      {" A , B ,", {" A ", "B ", ""}},
      {",,C", {"", "", "C"}},
      {std::string("A, B\0, C", 8), {"A", "B", ""}},
  };
  for (const auto& c : cases) EXPECT_EQ(DecodeKeyLine(c.line), c.keys) << c.line;
}

TEST(CardFileFormatTest, FieldNamesAreLinesWithoutTheirLastCharacter) {
  const struct {
    std::string block;
    std::vector<std::string> names;
  } cases[] = {
      {"", {}},
      {"A\r\nB\r\n", {"A", "B"}},
      {"A\r\n\nB\r\n", {"A", "B"}},        // a bare line feed is no name
      {"A\r\n\r\nB\r\n", {"A", "", "B"}},  // a lone carriage return is an empty one
      {"AB\nC\r\n", {"A", "C"}},           // whatever the last character is
      {"A\r\nBC", {"A", "B"}},             // also of a line that the block's end cuts
  };
  for (const auto& c : cases) EXPECT_EQ(DecodeFieldNames(c.block), c.names) << c.block;
  EXPECT_EQ(EncodeFieldNames({"A", "B", "", "C"}), "A\r\nB\r\n");
}

TEST(CardFileFormatTest, AStampStandsBehindTheFirstMarker) {
  const struct {
    const char *text, *before, *stamp;
  } cases[] = {
      {"a\r\n\x7Fxy", "a\r\n", "xy"}, {"a\r\n", "a\r\n", ""},
      {"a\r\n\x7F", "a\r\n\x7F", ""},  // an empty stamp is none
      {"a\x7Fx\x7Fy", "a", "x\x7Fy"}, {"\x7Fx", "", "x"},
  };
  for (const auto& c : cases) {
    const BodyText parts = SplitStamp(c.text);
    EXPECT_EQ(parts.text, c.before) << c.text;
    EXPECT_EQ(parts.stamp, c.stamp) << c.text;
  }
}

TEST(CardFileFormatTest, ANewFileHoldsOneBlankCard) {
  const std::string names = "Last Name\r\nPhone\r\n";
  const std::string expected =
      std::string("WMW300\0\0\0\0\x01\0", 12) + std::string(48, '\0') + test::Word(0x611, 4) +
      std::string(1, '\0') + test::Word(0x611 + 2 + 18, 4) + std::string(1292, '\0') +
      std::string(64, '\0') + test::Padded("Last Name, Phone", 128) + test::Word(18, 2) + names;
  EXPECT_EQ(NewCardFile({"Last Name", "Phone"}, {"Last Name", "Phone"}), expected);
  // Neither the key line nor the size word of the names can be overrun.
  const std::string longName(200, 'k');
  EXPECT_EQ(NewCardFile({longName}, {longName}).size(), 1361U + 64 + 128 + 2 + 202);
  EXPECT_EQ(NewCardFile({std::string(70000, 'n')}, {}).size(), 1361U + 64 + 128 + 2);
  EXPECT_EQ(MakeTitle(std::string("a\0b", 3)), MakeTitle("a"));
}

}  // namespace
}  // namespace pw::cardfile
