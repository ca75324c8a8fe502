#include "base/text.h"

#include <gtest/gtest.h>

namespace pw {
namespace {

TEST(TextTest, ParsesDecimalNumbersAt32Bits) {
  const struct {
    const char* text;
    std::int32_t value;
  } cases[] = {
      {"", 0},
      {"x1", 0},
      {"42", 42},
      {" \t\r\n\v\f42", 42},
      {"-42", -42},
      {"+42", 42},
      {"- 42", 0},
      {"12a3", 12},
      {"2147483647", 2147483647},
      {"2147483648", INT32_MIN},
      {"-2147483648", INT32_MIN},
      {"4294967296", 0},
      {"4294967301", 5},
      {"99999999999999999999", 1661992959},  // 99999999999999999999 modulo 2^32
  };
  for (const auto& c : cases) EXPECT_EQ(ParseLong(c.text), c.value) << c.text;
}

TEST(TextTest, PrintsWhatItParses) {
  for (const std::int32_t value : {0, 1, -1, INT32_MAX, INT32_MIN}) {
    EXPECT_EQ(ParseLong(FormatLong(value)), value);
  }
  EXPECT_EQ(FormatLong(INT32_MIN), "-2147483648");
}

TEST(TextTest, ComparesBytesUnsignedWithOnlyAsciiLettersFolded) {
  EXPECT_EQ(CompareIgnoringCase("aBc", "AbC"), 0);
  EXPECT_LT(CompareIgnoringCase("ab", "ABC"), 0);
  EXPECT_GT(CompareIgnoringCase("b", "ABC"), 0);
  // "_" lies between the capital and the small letters: folding goes down.
  EXPECT_LT(CompareIgnoringCase("_", "A"), 0);
  EXPECT_GT(CompareIgnoringCase("\xE4", "z"), 0);
  EXPECT_NE(CompareIgnoringCase("\xC4", "\xE4"), 0);
  EXPECT_FALSE(EqualIgnoringCase("a", "ab"));
  EXPECT_TRUE(EndsWithIgnoringCase("Friends.WMCARD", ".WMCard"));
  EXPECT_FALSE(EndsWithIgnoringCase("Card", ".WMCard"));
}

TEST(TextTest, FoldsOnlyWholeLineBreaks) {
  std::string text = "a\r\nb\rc\nd\r\n\r\n";
  EXPECT_TRUE(FoldLineBreaks(text));
  EXPECT_EQ(text, "a b\rc\nd  ");
  EXPECT_FALSE(FoldLineBreaks(text));
}

TEST(TextTest, JoinsAndFormats) {
  EXPECT_EQ(Join({"", "a", "", "b", ""}, ", "), ", a, , b, ");
  EXPECT_EQ(Join({}, ", "), "");
  EXPECT_EQ(JoinNonEmpty({"", "a", "", "b", ""}, ", "), "a, b");
  EXPECT_EQ(JoinNonEmpty({"", ""}, ", "), "");
  const std::string longText(5000, 'x');
  EXPECT_EQ(Format("<%s> %d", longText.c_str(), -7), "<" + longText + "> -7");
  EXPECT_EQ(Format("%s", ""), "");
}

}  // namespace
}  // namespace pw
