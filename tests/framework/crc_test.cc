#include "framework/crc.h"

#include <gtest/gtest.h>

#include "base/crc32.h"

namespace {

TEST(CrcTest, ATextFoldsItsBytesAndAZero) {
  EXPECT_EQ(pw::FoldText(0, ""), 0xD202EF8DU) << "the CRC of one zero byte";
  EXPECT_EQ(pw::FoldText(0, "ab"), pw::Crc32(0, std::string_view("ab\0", 3)));
  EXPECT_NE(pw::FoldText(pw::FoldText(0, "ab"), "c"), pw::FoldText(pw::FoldText(0, "a"), "bc"));
}

TEST(CrcTest, AStampFoldsItsFieldsInOrder) {
  const PWDateTimeStamp stamp(0x07CF, 12, 31, 23, 59, 58);
  EXPECT_EQ(pw::FoldStamp(5, stamp), pw::Crc32(5, "\xCF\x07\x0C\x1F\x17\x3B\x3A"));
}

TEST(CrcTest, TheAccumulatorChains) {
  PWCrc crc;
  crc.Add(PWString("ab"));
  crc.Add(PWString());
  EXPECT_EQ(crc.value, pw::Crc32(0, std::string_view("ab\0\0", 4)));
}

}  // namespace
