#include "timeplace/clock_format.h"

#include <gtest/gtest.h>

namespace pw::clocks {
namespace {

// A clock as it lies in the file. Behind each text stands what stood there before.
std::string GoldenClock() {
  std::string bytes("Paris, \0lder city text####", 26);
  bytes += std::string("France\0", 7) + std::string(29, 'c');
  bytes += std::string("Office\0", 7) + std::string(59, 'l');
  bytes += std::string("\x00\x00\x00\x00\xFE\xFF\xFF\xFF", 8) + "0123456789abcdef";
  return bytes;
}

TEST(ClockFormatTest, AClockIsReadAndWrittenFieldByField) {
  const std::string bytes = GoldenClock();
  ASSERT_EQ(bytes.size(), kClockSize);
  ASSERT_EQ(kFileSize, 1216U);
  ByteReader in(bytes);
  const WMClock clock = DecodeClock(in);
  EXPECT_FALSE(in.Short());
  EXPECT_EQ(clock.CityText(), "Paris, ");
  EXPECT_EQ(clock.Country(), "France");
  EXPECT_EQ(clock.Label(), "Office");
  EXPECT_EQ(clock.inactive, 0);
  EXPECT_EQ(clock.notHome, -2);
  ByteWriter out;
  EncodeClock(out, clock);
  EXPECT_EQ(out.Written(), bytes);
}

TEST(ClockFormatTest, TextsWithoutAZeroEndWithTheirField) {
  ByteReader in("");
  WMClock clock = DecodeClock(in);
  clock.cityText.fill('x');
  clock.country.fill('y');
  clock.label.fill('z');
  EXPECT_EQ(clock.CityText(), std::string(26, 'x'));
  EXPECT_EQ(clock.Country(), std::string(36, 'y'));
  EXPECT_EQ(clock.Label(), std::string(66, 'z'));
}

// City and country get zeros up to the last byte of their field, which stays; behind a label's own
// zero everything stays.
TEST(ClockFormatTest, TextsAreWrittenOverWhatStoodThere) {
  const struct {
    std::string text, city, country, label;
  } cases[] = {
      {"", std::string(25, '\0') + "#", std::string(35, '\0') + "#",
       std::string(1, '\0') + std::string(65, '#')},
      {"ab", "ab" + std::string(23, '\0') + "#", "ab" + std::string(33, '\0') + "#",
       std::string("ab\0", 3) + std::string(63, '#')},
      {std::string("a\0b", 3), "a" + std::string(24, '\0') + "#", "a" + std::string(34, '\0') + "#",
       std::string("a\0", 2) + std::string(64, '#')},
      {std::string(90, 'x'), std::string(25, 'x') + "#", std::string(35, 'x') + "#",
       std::string(66, 'x')},
  };
  for (const auto& c : cases) {
    WMClock clock;
    clock.cityText.fill('#');
    clock.country.fill('#');
    clock.label.fill('#');
    clock.SetCityText(c.text);
    clock.SetCountry(c.text);
    clock.SetLabel(c.text);
    EXPECT_EQ(std::string(clock.cityText.begin(), clock.cityText.end()), c.city);
    EXPECT_EQ(std::string(clock.country.begin(), clock.country.end()), c.country);
    EXPECT_EQ(std::string(clock.label.begin(), clock.label.end()), c.label);
  }
}

}  // namespace
}  // namespace pw::clocks
