#include "framework/registry.h"

#include <gtest/gtest.h>

#include "platform/testing/test_platform.h"

namespace {

constexpr const char* kKey = "SOFTWARE\\Gullwing\\Test";

TEST(RegistryTest, ReadsAndWritesAnOpenKey) {
  pw::TestPlatform platform;
  platform.registry.Set(kKey, "Number", pw::NumberValue(50));
  platform.registry.Set(kKey, "Text", pw::TextValue("fifty"));
  PWRegistry registry;
  ASSERT_NE(registry.Open("software\\gullwing\\TEST", false), 0);
  PWString text;
  std::uint32_t number = 0;
  EXPECT_NE(registry.Read("TEXT", text), 0);
  EXPECT_TRUE(text == "fifty");
  EXPECT_NE(registry.Read("Number", &number), 0);
  EXPECT_EQ(number, 50U);
  // A value of the other type, or none, leaves what was there.
  EXPECT_EQ(registry.Read("Number", text), 0);
  EXPECT_EQ(registry.Read("Text", &number), 0);
  EXPECT_EQ(registry.Read("Nothing", text), 0);
  EXPECT_TRUE(text == "fifty");
  EXPECT_EQ(number, 50U);

  EXPECT_NE(registry.Write("Text", "new"), 0);
  EXPECT_NE(registry.Write("Empty", nullptr), 0);
  EXPECT_NE(registry.Close(), 0);
  EXPECT_EQ(platform.registry.Get(kKey, "Text"), pw::TextValue("new"));
  EXPECT_EQ(platform.registry.Get(kKey, "Empty"), pw::TextValue(""));
}

TEST(RegistryTest, NothingHappensWithoutAnOpenKey) {
  pw::TestPlatform platform;
  PWRegistry registry;
  PWString text("before");
  EXPECT_EQ(registry.Open(kKey, false), 0);
  EXPECT_EQ(registry.Read("Text", text), 0);
  EXPECT_EQ(registry.Write("Text", "new"), 0);
  EXPECT_EQ(registry.Close(), 0);
  EXPECT_TRUE(text == "before");
  platform.registry.Set(kKey, "Text", pw::TextValue("x"));
  platform.registry.readOnly = true;
  EXPECT_EQ(registry.Open(kKey, false), 0) << "a key must take a write";
}

}  // namespace
