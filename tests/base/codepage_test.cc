#include "base/codepage.h"

#include <gtest/gtest.h>

namespace pw {
namespace {

TEST(CodePageTest, EveryByteSurvivesTheWayToUtf8AndBack) {
  std::string all;
  for (int byte = 0; byte < 256; ++byte) all.push_back(static_cast<char>(byte));
  EXPECT_EQ(Utf8ToCodePage(CodePageToUtf8(all)), all);
}

TEST(CodePageTest, KnowsItsCharacters) {
  EXPECT_EQ(CodePageToUtf8("\x80 \x93q\x94 \xFC"), "\u20AC \u201Cq\u201D \u00FC");
  EXPECT_EQ(CodePageToUtf8("\x81"), "\u0081");
  EXPECT_EQ(Utf8ToCodePage("M\u00FCller \u2013 \u0178"), "M\xFCller \x96 \x9F");
}

TEST(CodePageTest, RefusesWhatItLacksAndWhatIsMalformed) {
  for (const char* text : {
           "\u0416",            // a letter of another script
           "\U0001F600",        // beyond the basic plane
           "\xFC",              // a lone byte of the code page
           "\xC3",              // cut short
           "\xC3(",             // no continuation
           "\xC0\xAF",          // overlong
           "\xED\xA0\x80",      // a surrogate
           "\xF4\x90\x80\x80",  // beyond Unicode
           "\u0080",            // no byte stands for it
       }) {
    EXPECT_EQ(Utf8ToCodePage(text), std::nullopt) << text;
  }
  EXPECT_EQ(Utf8ToCodePageLossy("a\u0416\xFFz"), "a??z");
}

TEST(CodePageTest, FileNamesIgnoreCaseOfEveryLetter) {
  EXPECT_TRUE(EqualFileNames("\xC4rger \x8A\x9F.WMCARD", "\xE4RGER \x9A\xFF.wmcard"));
  EXPECT_FALSE(EqualFileNames("\xD7", "\xF7")) << "signs aren't letters";
  EXPECT_FALSE(EqualFileNames("a", "ab"));
  EXPECT_LT(CompareFileNames("B", "c"), 0);
  EXPECT_GT(CompareFileNames("\xE4", "Z"), 0);
}

}  // namespace
}  // namespace pw
