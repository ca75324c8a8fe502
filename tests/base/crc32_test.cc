#include "base/crc32.h"

#include <gtest/gtest.h>

namespace pw {
namespace {

TEST(Crc32Test, GivesTheKnownCheckValueInOnePassAndInPieces) {
  constexpr std::uint32_t kCheck = 0xCBF43926;
  EXPECT_EQ(Crc32(0, "123456789"), kCheck);
  EXPECT_EQ(Crc32(Crc32(Crc32(0, "1234"), ""), "56789"), kCheck);
  EXPECT_EQ(Crc32(0, ""), 0U);
  EXPECT_EQ(Crc32(0, std::string_view("\0", 1)), 0xD202EF8DU);
}

}  // namespace
}  // namespace pw
