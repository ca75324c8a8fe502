#include "timeplace/software_value.h"

#include <gtest/gtest.h>

#include "platform/testing/test_platform.h"
#include "plugin/discovery.h"

namespace pw {
namespace {

constexpr const char* kDesktop = "SOFTWARE\\Gullwing\\PairWise Desktop\\Version 1\\Main";
constexpr const char* kInformationManager =
    "SOFTWARE\\Gullwing\\ORB PairWise Information Manager\\Version 1\\Main";
constexpr const char* kWingmate98 = "SOFTWARE\\Gullwing\\Wingmate 98\\Version 1\\Main";

TEST(SoftwareValueTest, TheFirstEditionThatHasTheValueWins) {
  const struct {
    const char* what;
    std::optional<RegistryValue> desktop, informationManager, wingmate98;
    std::optional<std::string> expected;
  } cases[] = {
      {"all", TextValue("d"), TextValue("i"), TextValue("w"), "d"},
      {"the second", std::nullopt, TextValue("i"), TextValue("w"), "i"},
      {"the third", std::nullopt, std::nullopt, TextValue("w"), "w"},
      {"none", std::nullopt, std::nullopt, std::nullopt, std::nullopt},
      {"an empty text is one", TextValue(""), TextValue("i"), std::nullopt, ""},
      {"as long as may be", TextValue("12345678"), TextValue("i"), std::nullopt, "12345678"},
      {"too long", TextValue("123456789"), TextValue("i"), std::nullopt, "i"},
      {"no text", NumberValue(7), std::nullopt, TextValue("w"), "w"},
      {"up to a zero", TextValue(std::string("a\0b", 3)), std::nullopt, std::nullopt, "a"},
  };
  for (const auto& c : cases) {
    TestPlatform platform;
    platform.registry.AddKey(kDesktop);
    const auto set = [&](const char* key, const std::optional<RegistryValue>& value) {
      if (value) platform.registry.Set(key, "LocalCity", *value);
    };
    set(kDesktop, c.desktop);
    set(kInformationManager, c.informationManager);
    set(kWingmate98, c.wingmate98);
    EXPECT_EQ(ReadSoftwareValue("Main", "localcity", 8), c.expected) << c.what;
    EXPECT_EQ(ReadSoftwareValue("Other", "LocalCity", 8), std::nullopt) << c.what;
    platform.registry.readOnly = true;
    EXPECT_EQ(ReadSoftwareValue("Main", "LocalCity", 8), std::nullopt)
        << "keys are opened to write";
  }
}

TEST(SoftwareValueTest, TheDataFolderIsThatOfTheEditionThatRuns) {
  const std::string longest = "C:\\" + std::string(257, 'x');
  {
    TestPlatform platform;
    EXPECT_EQ(OrganiserDataFolder(), std::nullopt);
    platform.registry.Set(kDesktop, "Data", TextValue(longest + "x"));
    platform.registry.Set(kInformationManager, "Data", TextValue(longest));
    platform.registry.Set(kWingmate98, "Data", TextValue("C:\\Ninety-eight\\"));
    EXPECT_EQ(OrganiserDataFolder(), longest);
    CalendarKeyPath() = kWingmate98;
    EXPECT_EQ(OrganiserDataFolder(), "C:\\Ninety-eight\\");
    CalendarKeyPath() = "SOFTWARE\\Gullwing\\none";
    EXPECT_EQ(OrganiserDataFolder(), std::nullopt) << "no other edition's";
  }
  TestPlatform platform;
  platform.registry.Set(kDesktop, "Data", TextValue("C:\\Desktop"));
  EXPECT_EQ(OrganiserDataFolder(), "C:\\Desktop") << "the key path is forgotten with the rest";
}

TEST(SoftwareValueTest, AFolderMayEndInASeparator) {
  const struct {
    const char *folder, *path;
  } cases[] = {{"C:\\Data", "C:\\Data\\x.dat"},
               {"C:\\Data\\", "C:\\Data\\x.dat"},
               {"C:/Data/", "C:/Data/x.dat"},
               {"", "\\x.dat"}};
  for (const auto& c : cases) EXPECT_EQ(PathInFolder(c.folder, "x.dat"), c.path);
}

}  // namespace
}  // namespace pw
