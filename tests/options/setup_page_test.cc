#include "options/setup_page.h"

#include <memory>
#include <utility>
#include <vector>

#include "tests/options/options_fixture.h"

namespace pw::options {
namespace {

using test::Browse;
using test::ControlOf;

constexpr const char* kInstallKey = "SOFTWARE\\Gullwing\\PairWise Desktop\\Version 1\\Install";

// Remembers, at each reset, which folder was set by then.
class Wizard : public CWizardSheet {
 public:
  explicit Wizard(PWConfig& config) : CWizardSheet("Wizard"), config(config) {}
  void ResetApplicationSource(PWApplicationSource* source) override {
    sources.push_back(source);
    folders.push_back(config.String(PWConfig::kDataFolder).Str());
  }

  std::vector<PWApplicationSource*> sources;
  std::vector<std::string> folders;

 private:
  PWConfig& config;
};

class SetupPageTest : public test::OptionsTest {
 protected:
  PageModel& Start() {
    platform.registry.Set(kInstallKey, "InstallDir", TextValue("C:\\Org\\"));
    EXPECT_EQ(manager.AddSetupPages(&wizard), 0);
    PageModel& page = *wizard.Pages().back();
    page.Show(pageWindow);
    return page;
  }
  std::string Entry(std::uint32_t entry) { return config.String(entry).Str(); }

  Wizard wizard{config};
};

TEST_F(SetupPageTest, StartsWithTheFolderOfTheInstallation) {
  const struct {
    std::optional<std::string> installed;
    const char* folder;
    const char* installFolder;
  } cases[] = {{std::nullopt, "\\UserData", ""},
               {"C:\\Org", "C:\\Org\\UserData", "C:\\Org"},
               {"C:\\Org\\", "C:\\Org\\UserData", "C:\\Org"},
               {"C:\\Org\\\\", "C:\\Org\\\\UserData", "C:\\Org\\"}};
  for (const auto& c : cases) {
    if (c.installed) platform.registry.Set(kInstallKey, "InstallDir", TextValue(*c.installed));
    SetupPage page(manager, nullptr);
    page.Show(kNoWindow);
    EXPECT_EQ(ControlOf(page, 1008).text, c.folder);
    EXPECT_TRUE(page.Next());
    EXPECT_EQ(Entry(PWConfig::kDataFolder), c.folder);
    EXPECT_EQ(Entry(PWConfig::kInstallFolder), c.installFolder);
  }
}

TEST_F(SetupPageTest, NamesTheOrganiserAndAsksForItsButtonsAtEachShow) {
  PageModel& page = Start();
  EXPECT_EQ(page.Dialog(), 131);
  const std::pair<std::int32_t, const char*> texts[] = {
      {1019, "PairWise Desktop Setup"},
      {1012, "Please choose the folder where your PairWise Desktop files are located."},
      {1013, "&PairWise Desktop folder:"},
      {1020,
       "PairWise supports only one folder for PairWise Desktop files.  If you have your files in "
       "multiple folders, you may want to merge them into one folder before continuing with "
       "Setup."}};
  for (const auto& [number, text] : texts) EXPECT_EQ(ControlOf(page, number).text, text);
  page.Show(pageWindow);
  ASSERT_EQ(platform.windows.posted.size(), 2U);
  for (const auto& posted : platform.windows.posted) {
    EXPECT_EQ(posted.window, sheetWindow);
    EXPECT_EQ(posted.number, 0x470U);
    EXPECT_EQ(posted.lParam, 3);
  }
}

TEST_F(SetupPageTest, GoingOnTakesTheFolderAndGoingBackDoesNot) {
  PageModel& page = Start();
  EXPECT_TRUE(page.Leave());
  EXPECT_EQ(Entry(PWConfig::kDataFolder) + Entry(PWConfig::kInstallFolder), "");
  ControlOf(page, 1008).text = "\\";
  EXPECT_TRUE(page.Next());
  EXPECT_TRUE(wizard.folders.empty()) << "no folder is what was accepted before";
  const struct {
    const char* typed;
    const char* folder;
    std::size_t resets;
  } steps[] = {{"C:\\Data\\", "C:\\Data", 1},
               {"C:\\Data", "C:\\Data", 1},
               {"C:\\data", "C:\\data", 2},
               {"C:\\Data\\\\", "C:\\Data\\", 3}};
  for (const auto& step : steps) {
    ControlOf(page, 1008).text = step.typed;
    EXPECT_TRUE(page.Next());
    EXPECT_EQ(Entry(PWConfig::kDataFolder), step.folder);
    EXPECT_EQ(Entry(PWConfig::kInstallFolder), "C:\\Org");
    ASSERT_EQ(wizard.folders.size(), step.resets) << step.typed;
    EXPECT_EQ(wizard.folders.back(), step.folder) << "set before the engine hears of it";
    EXPECT_EQ(wizard.sources.back(), &source);
  }
}

TEST_F(SetupPageTest, BrowsesForAFolder) {
  PageModel& page = Start();
  PutData("C:\\New");
  platform.dialogs.folderAnswers = {"C:\\Empty"};
  Browse(page);
  EXPECT_EQ(ControlOf(page, 1008).text, "C:\\Org\\UserData");
  platform.dialogs.folderAnswers = {"C:\\Empty", "C:\\New"};
  Browse(page);
  EXPECT_EQ(ControlOf(page, 1008).text, "C:\\New");
  const auto& choice = platform.dialogs.folderChoices.back();
  EXPECT_EQ(choice.parent, pageWindow);
  EXPECT_EQ(choice.startFolder, "C:\\Org\\UserData");
  EXPECT_EQ(choice.help, "WMSource");
  EXPECT_EQ(choice.complaints.size(), 1U);
}

TEST_F(SetupPageTest, StandsAlsoInAPlainSheet) {
  CPropertySheet sheet("Plain");
  EXPECT_EQ(manager.AddExtraSetupPages(&sheet), 0);
  ASSERT_EQ(sheet.Pages().size(), 1U);
  PageModel& page = *sheet.Pages()[0];
  EXPECT_EQ(page.Caption(), "PairWise Desktop");
  page.Show(kNoWindow);
  EXPECT_TRUE(page.Next());
  page.Help();
  EXPECT_EQ(platform.dialogs.helpShown, std::vector<std::string>{"WMSource"});
  EXPECT_TRUE(platform.dialogs.HelpContexts().empty());
}

}  // namespace
}  // namespace pw::options
