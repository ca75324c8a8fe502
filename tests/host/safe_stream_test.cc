#include "host/safe_stream.h"

#include <sstream>
#include <string>

#include <gtest/gtest.h>

namespace pw {
namespace {

TEST(SafeStreamTest, LetsNothingThroughThatSteersATerminal) {
  const struct {
    std::string text;
    const char* shown;
  } cases[] = {
      {"a\tb\n\xC3\xA9 \xE2\x82\xAC \xF0\x9F\x98\x80\n",
       "a\tb\n\xC3\xA9 \xE2\x82\xAC \xF0\x9F\x98\x80\n"},
      {"\x1B[31mred\x1B[0m\rover\x7F\b", "?[31mred?[0m?over??"},
      {std::string("\0\xC2\x9B"
                   "31m",
                   6),
       "??31m"},
      {"\x9B"
       "31m \xE2\x82 \xFF",
       "?31m ?? ?"},
      {"\xC3\x1B[0m", "??[0m"},
  };
  for (const auto& each : cases) {
    std::ostringstream whole;
    SafeStream(whole) << each.text;
    EXPECT_EQ(whole.str(), each.shown);
    std::ostringstream pieces;
    SafeStream piecewise(pieces);
    for (const char byte : each.text) piecewise << byte;
    EXPECT_EQ(pieces.str(), each.shown) << "however it is cut";
  }
}

}  // namespace
}  // namespace pw
