#include "framework/string.h"

#include <cstring>
#include <memory>

#include <gtest/gtest.h>

namespace {

void ExpectFresh(const PWString& text) {
  EXPECT_EQ(text.buffer, nullptr);
  EXPECT_EQ(text.length, 0U);
  EXPECT_EQ(text.capacity, 0U);
  EXPECT_TRUE(text.IsEmpty());
}

TEST(StringTest, AnEmptyTextIsLikeNone) {
  PWString text("something");
  text = "";
  ExpectFresh(text);
  text = "something";
  text = static_cast<const char*>(nullptr);
  ExpectFresh(text);
  text = "something";
  text.Clear();
  ExpectFresh(text);
  ExpectFresh(PWString(""));
  EXPECT_EQ(static_cast<const char*>(text), nullptr);
  EXPECT_TRUE(text == "");
}

TEST(StringTest, ATextTakesExactlyItsSize) {
  PWString text("four");
  EXPECT_EQ(text.length, 5U);
  EXPECT_EQ(text.capacity, 5U);
  EXPECT_STREQ(text, "four");
  text += "teen";
  text.AddChar('!');
  EXPECT_STREQ(text, "fourteen!");
  EXPECT_EQ(text.capacity, 10U);
  text = static_cast<const char*>(text) + 4;  // out of its own buffer
  EXPECT_STREQ(text, "teen!");
  EXPECT_TRUE(text + "x" == "teen!x");
  EXPECT_TRUE(text == "teen!");
  EXPECT_FALSE(text == "Teen!");
}

TEST(StringTest, OnlyATerminatorIsEmptyAndAReservedBufferIsNot) {
  PWString text;
  text.Reserve(8);
  EXPECT_EQ(text.capacity, 8U);
  EXPECT_EQ(text.length, 0U);
  EXPECT_FALSE(text.IsEmpty());
  EXPECT_EQ(text.View(), "");
  std::strcpy(text.buffer, "abc");
  text.length = 4;
  EXPECT_EQ(text.View(), "abc");
  text.length = 1;
  EXPECT_TRUE(text.IsEmpty());
  EXPECT_TRUE(text == "") << "whatever stands in the buffer";
  text.Reserve(0);
  ExpectFresh(text);
}

TEST(StringTest, NumbersAreDecimal) {
  PWString text;
  text = -2147483647 - 1;
  EXPECT_STREQ(text, "-2147483648");
  text = 0;
  EXPECT_STREQ(text, "0");
}

TEST(StringTest, ClonesAndMoves) {
  PWString text("abc");
  const std::unique_ptr<PWObject> clone(text.Clone());
  EXPECT_TRUE(*static_cast<PWString*>(clone.get()) == "abc");
  EXPECT_NE(static_cast<PWString*>(clone.get())->buffer, text.buffer);
  EXPECT_EQ(text.Compare(clone.get()), -1) << "no two objects compare as equal";
  PWString moved(std::move(text));
  EXPECT_TRUE(moved == "abc");
}

TEST(StringTest, LoadsByNumber) {
  const PWModuleString strings[] = {{3, "three"}, {40, "forty"}, {41, "%s"}};
  const PWModuleRecord module = {strings, 3};
  PWString text("before");
  EXPECT_TRUE(text.Load(&module, 40));
  EXPECT_STREQ(text, "forty");
  for (const std::uint32_t unknown : {0U, 4U, 42U, 65536U + 40U}) {
    EXPECT_FALSE(text.Load(&module, unknown));
    ExpectFresh(text);
  }
  EXPECT_FALSE(text.Load(nullptr, 40));
}

}  // namespace
