#include "base/cursor.h"

#include <gtest/gtest.h>

namespace pw {
namespace {

TEST(ByteReaderTest, ReadsLittleEndianFieldsInOrder) {
  ByteReader in(
      std::string_view("\xFE\x01\x80\x78\x56\x34\x92\xFF\xFF\xFF\xFF"
                       "ab",
                       13));
  EXPECT_EQ(in.U8(), 0xFE);
  EXPECT_EQ(in.U16(), 0x8001);
  EXPECT_EQ(in.U32(), 0x92345678U);
  EXPECT_EQ(in.I32(), -1);
  EXPECT_EQ(in.Take(2), "ab");
  EXPECT_EQ(in.Remaining(), 0U);
  EXPECT_FALSE(in.Short());
}

TEST(ByteReaderTest, AShortReadIsAStateAndNeverGoesBeyondTheEnd) {
  ByteReader number("abc");
  EXPECT_EQ(number.U32(), 0U);
  EXPECT_TRUE(number.Short());
  EXPECT_EQ(number.Position(), 3U);

  ByteReader bytes("abc");
  EXPECT_EQ(bytes.Take(SIZE_MAX), "abc");
  EXPECT_TRUE(bytes.Short());

  ByteReader sought("abc");
  sought.Seek(0xFFFFFFFF);
  EXPECT_FALSE(sought.Short()) << "nothing was read yet";
  EXPECT_EQ(sought.Take(1), "");
  EXPECT_TRUE(sought.Short());
  sought.Seek(1);
  EXPECT_EQ(sought.Take(2), "bc");
  EXPECT_TRUE(sought.Short()) << "a short read isn't forgotten";
}

TEST(ByteWriterTest, WritesWhatTheReaderReads) {
  ByteWriter out;
  out.U8(0xFE);
  out.U16(0x8001);
  out.U32(0x92345678);
  out.I32(-2);
  out.Padded("abc", 5);
  out.Padded("abc", 2);
  out.Zeros(1);
  EXPECT_EQ(out.Written(), std::string("\xFE\x01\x80\x78\x56\x34\x92\xFE\xFF\xFF\xFF"
                                       "abc\0\0ab\0",
                                       19));
}

}  // namespace
}  // namespace pw
