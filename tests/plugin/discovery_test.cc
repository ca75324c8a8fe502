#include "plugin/discovery.h"

#include <gtest/gtest.h>

#include "platform/testing/test_platform.h"
#include "plugin/source_manager.h"

namespace {

constexpr const char* kKey = "SOFTWARE\\Gullwing\\Running";
constexpr const char* kDesktopMain = "SOFTWARE\\Gullwing\\PairWise Desktop\\Version 1\\Main";

// A key of an edition; that of a code of none is the information manager's.
std::string KeyOf(std::int32_t product, const std::string& name) {
  const char* editions[] = {"ORB PairWise Information Manager", "Wingmate 98", "PairWise Desktop",
                            "PairWise Desktop"};
  const std::string edition = product > 3 ? editions[0] : editions[product];
  return "SOFTWARE\\Gullwing\\" + edition + "\\Version 1\\" + name;
}

class DiscoveryTest : public testing::Test {
 protected:
  DiscoveryTest() { manager.Config = &config; }

  void Run(std::int32_t product) {
    config.String(PWConfig::kProductKey, kKey);
    platform.registry.Set(kKey, "PRODUCT", pw::NumberValue(static_cast<std::uint32_t>(product)));
    manager.Product = -1;
  }

  pw::TestPlatform platform;
  PWConfig config;
  WMSourceManager manager{0};
};

TEST_F(DiscoveryTest, TheProductIsReadOnceItCanBeRead) {
  EXPECT_EQ(manager.GetProduct(), -1) << "no key is named";
  config.String(PWConfig::kProductKey, kKey);
  EXPECT_EQ(manager.GetProduct(), -1) << "no key is there";
  EXPECT_STREQ(manager.Name(), "PairWise Information Manager");
  platform.registry.Set(kKey, "Other", pw::NumberValue(2));
  EXPECT_EQ(manager.GetProduct(), 0) << "a key without the value";
  platform.registry.Set(kKey, "PRODUCT", pw::NumberValue(2));
  EXPECT_EQ(manager.GetProduct(), 0) << "it isn't read again";
}

TEST_F(DiscoveryTest, NamesAndIconsByProduct) {
  const struct {
    std::int32_t product;
    const char* name;
    std::int32_t icon;
  } cases[] = {{-1, "PairWise Information Manager", 131},
               {0, "PairWise Information Manager", 131},
               {1, "Wingmate 98", 129},
               {2, "PairWise Desktop", 134},
               {3, "Wingmate 99", 138}};
  for (const auto& c : cases) {
    WMSourceManager one(0);
    one.Config = &config;
    Run(c.product);
    EXPECT_STREQ(one.Name(), c.name);
    EXPECT_EQ(platform.dialogs.IconNumber(one.Icon()), c.icon);
    EXPECT_EQ(one.Icon(), one.Icon()) << "loaded once";
  }
  // A code of no edition keeps the last name and has no icon.
  Run(17);
  EXPECT_STREQ(manager.Name(), "Wingmate 99");
  EXPECT_EQ(manager.Icon(), nullptr);
  EXPECT_FALSE(manager.IsInstalled());
}

TEST_F(DiscoveryTest, EachEditionIsInstalledWhereItsTraceIs) {
  EXPECT_FALSE(manager.IsInstalled());
  platform.registry.Set("SOFTWARE\\Gullwing\\ORB PairWise Information Manager\\Version 1", "x",
                        pw::TextValue(""));
  EXPECT_TRUE(manager.IsInstalled()) << "not known goes as the information manager";
  Run(0);
  EXPECT_TRUE(manager.IsInstalled());
  Run(1);
  EXPECT_FALSE(manager.IsInstalled());
  platform.registry.Set("SOFTWARE\\Gullwing\\Wingmate 98", "x", pw::TextValue(""));
  EXPECT_TRUE(manager.IsInstalled());
}

TEST_F(DiscoveryTest, Edition99IsInstalledJustWhereTheDesktopProgramIsNot) {
  const auto installed = [&](std::int32_t product) {
    Run(product);
    return manager.IsInstalled();
  };
  EXPECT_FALSE(installed(2));
  EXPECT_FALSE(installed(3)) << "without the key neither is";
  platform.registry.Set(kDesktopMain, "Other", pw::TextValue(""));
  EXPECT_FALSE(installed(2));
  EXPECT_TRUE(installed(3)) << "a key that doesn't say where the program is";
  platform.registry.Set(kDesktopMain, "EXE", pw::TextValue("C:\\Desk"));
  EXPECT_FALSE(installed(2));
  EXPECT_TRUE(installed(3));
  platform.files.Put("C:\\Desk\\PWDesktop.EXE", "");
  EXPECT_TRUE(installed(2));
  EXPECT_FALSE(installed(3));
}

TEST_F(DiscoveryTest, Version50IsANumberUnderTheDesktopKey) {
  EXPECT_FALSE(IsVersion50());
  const struct {
    pw::RegistryValue value;
    bool is50;
  } cases[] = {{pw::NumberValue(50), true},
               {pw::NumberValue(40), false},
               {pw::TextValue("50"), false},
               {{pw::RegistryType::kBinary, std::string("\x32\0\0\0", 4)}, false}};
  for (const auto& c : cases) {
    platform.registry.Set(kDesktopMain, "Version", c.value);
    EXPECT_EQ(IsVersion50(), c.is50);
  }
  platform.registry.Set(kDesktopMain, "Version", pw::NumberValue(50));
  platform.registry.readOnly = true;
  EXPECT_TRUE(IsVersion50()) << "it only reads";
}

TEST_F(DiscoveryTest, LaunchesTheProgramOfTheEdition) {
  const struct {
    std::int32_t product;
    std::string program;
  } cases[] = {{0, "ORBPIM.EXE"},
               {1, "Wingmate.EXE"},
               {2, "PWDesktop.EXE"},
               {3, "Wingmate.EXE"},
               {9, "ORBPIM.EXE"}};
  for (const auto& c : cases) {
    for (const char* folder : {"D:\\Prog", "D:\\Prog\\"}) {
      Run(c.product);
      platform.registry.Set(KeyOf(c.product, "Install"), "InstallDir", pw::TextValue(folder));
      platform.files.Put("D:\\Prog\\Program\\" + c.program, "");
      platform.shell.commands.clear();
      EXPECT_EQ(manager.LaunchApplication(), 0);
      ASSERT_EQ(platform.shell.commands.size(), 1U);
      EXPECT_EQ(platform.shell.commands[0].verb, "open");
      EXPECT_EQ(platform.shell.commands[0].file, "D:\\Prog\\Program\\" + c.program);
      EXPECT_EQ(platform.shell.commands[0].folder, "D:\\Prog\\Program\\");
      EXPECT_EQ(platform.shell.commands[0].parameters, "");
      EXPECT_EQ(platform.shell.commands[0].show, 1);
    }
  }
}

TEST_F(DiscoveryTest, LaunchesNothingThatIsNotThere) {
  Run(2);
  EXPECT_EQ(manager.LaunchApplication(), 1) << "no key";
  platform.registry.Set("SOFTWARE\\Gullwing\\PairWise Desktop\\Version 1\\Install", "InstallDir",
                        pw::TextValue("D:\\Prog"));
  EXPECT_EQ(manager.LaunchApplication(), 1) << "no program";
  EXPECT_TRUE(platform.shell.commands.empty());
  platform.files.Put("D:\\Prog\\Program\\PWDesktop.EXE", "");
  platform.shell.succeeds = false;
  EXPECT_EQ(manager.LaunchApplication(), 0) << "how it went isn't looked at";
}

TEST_F(DiscoveryTest, TheDefaultCalendarGivesFolderAndStem) {
  for (const std::int32_t product : {0, 1, 2, 3, 8}) {
    pw::TestPlatform own;
    own.registry.Set(kKey, "PRODUCT", pw::NumberValue(static_cast<std::uint32_t>(product)));
    own.registry.Set(KeyOf(product, "Calendar-Task"), "DefUserName",
                     pw::TextValue("E:\\User Data\\Ann"));
    config.String(PWConfig::kProductKey, kKey);
    manager.Product = -1;
    PWString out;
    EXPECT_TRUE(manager.FindDefaultCalendar(out));
    EXPECT_STREQ(out, "E:\\User Data\\Ann");
    EXPECT_STREQ(config.String(PWConfig::kDataFolder), "E:\\User Data");
    EXPECT_STREQ(config.String(PWConfig::kCalendarStem), "Ann");
  }
}

TEST_F(DiscoveryTest, ADefaultCalendarThatCanNotBeReadChangesNothing) {
  const char* key = "SOFTWARE\\Gullwing\\PairWise Desktop\\Version 1\\Calendar-Task";
  config.String(PWConfig::kDataFolder, "C:\\Data");
  PWString out("before");
  EXPECT_FALSE(manager.FindDefaultCalendar(out)) << "no key";
  platform.registry.Set(key, "DefUserName", pw::TextValue(std::string(256, 'x')));
  EXPECT_FALSE(manager.FindDefaultCalendar(out)) << "longer than the organiser takes";
  EXPECT_STREQ(out, "before");
  EXPECT_STREQ(config.String(PWConfig::kDataFolder), "C:\\Data");
  platform.registry.Set(key, "DefUserName", pw::TextValue(std::string(255, 'x')));
  EXPECT_TRUE(manager.FindDefaultCalendar(out)) << "a product that isn't known has the desktop's";
  EXPECT_STREQ(config.String(PWConfig::kDataFolder), "C:\\Data") << "a path without a folder";
  EXPECT_EQ(config.String(PWConfig::kCalendarStem).View().size(), 255U);
}

}  // namespace
