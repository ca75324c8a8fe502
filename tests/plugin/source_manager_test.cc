#include "plugin/source_manager.h"

#include <memory>

#include <gtest/gtest.h>

#include "framework/source.h"
#include "platform/testing/test_platform.h"

namespace {

constexpr const char* kDesktopMain = "SOFTWARE\\Gullwing\\PairWise Desktop\\Version 1\\Main";

class SourceManagerTest : public testing::Test {
 protected:
  SourceManagerTest() { manager.Config = &config; }

  pw::TestPlatform platform;
  PWConfig config;
  WMSourceManager manager{0};
};

TEST_F(SourceManagerTest, MakesASourceOfAnExactNameOnly) {
  const std::unique_ptr<PWSource> first(manager.CreateSource("contact"));
  const std::unique_ptr<PWSource> second(manager.CreateSource("contact"));
  EXPECT_NE(first, nullptr);
  EXPECT_NE(first, second);
  EXPECT_EQ(first->Manager, &manager);
  EXPECT_EQ(first->Kind, 2U);
  EXPECT_EQ(manager.CreateSource("Contact"), nullptr);
  EXPECT_EQ(manager.CreateSource(""), nullptr);
  EXPECT_EQ(manager.CreateSource(nullptr), nullptr);
}

TEST_F(SourceManagerTest, CalendarAndTodoHaveOneCategoryAndShareIt) {
  const struct {
    const char* type;
    bool shared;
  } cases[] = {{"contact", false}, {"calendar", true}, {"todo", true},
               {"memo", false},    {"Todo", false},    {"no such type", false}};
  for (const auto& c : cases) {
    EXPECT_EQ(manager.IsSharedCategory(c.type), c.shared) << c.type;
    EXPECT_EQ(manager.CategoryLimit(c.type), c.shared ? 1 : -1) << c.type;
  }
}

TEST_F(SourceManagerTest, ClearsTheNamesOfNewCardfiles) {
  EXPECT_EQ(manager.ClearSyncCategoryNames(), 0) << "also without the key";
  EXPECT_EQ(platform.registry.Get(kDesktopMain, "SyncCatNames"), std::nullopt);
  platform.registry.AddKey(kDesktopMain);
  EXPECT_EQ(manager.ClearSyncCategoryNames(), 0);
  EXPECT_EQ(platform.registry.Get(kDesktopMain, "SyncCatNames"), pw::TextValue(""))
      << "it is written where none was";
  platform.registry.Set(kDesktopMain, "SyncCatNames", pw::TextValue("A.WMCard\tB.WMCard"));
  EXPECT_EQ(manager.ClearSyncCategoryNames(), 0);
  EXPECT_EQ(platform.registry.Get(kDesktopMain, "SyncCatNames"), pw::TextValue(""));
}

}  // namespace
