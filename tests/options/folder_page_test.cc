#include "options/folder_page.h"

#include <vector>

#include "framework/engine_context.h"
#include "tests/options/options_fixture.h"

namespace pw::options {
namespace {

using test::Browse;
using test::ControlOf;
using Stems = std::vector<std::string>;

class FolderPageTest : public test::OptionsTest {
 protected:
  void Start(FolderPage& started, const char* stem) {
    settings.String(PWConfig::kDataFolder, "C:\\Data");
    settings.String(PWConfig::kCalendarStem, stem);
    started.Load(settings);
    started.Show(pageWindow);
  }
  std::string Folder() { return settings.String(PWConfig::kDataFolder).Str(); }

  PWConfig settings;  // that the page is for
  FolderPage page{manager};
};

TEST_F(FolderPageTest, OffersTheCalendarsOfTheFolder) {
  const struct {
    std::vector<std::string> files;
    const char* wanted;
    Stems offered;
    const char* selected;
  } cases[] = {
      {{"BEVEN.WMW", "AEVEN.WMW", "CTASK.WMW"}, "B", {"A", "B"}, "B"},
      {{"AEVEN.WMW", "BEVEN.WMW"}, "C", {"A", "B"}, "A"},
      {{"AEVEN.WMW", "BEVEN.WMW"}, "", {"A", "B"}, "A"},
      {{"EVEN.WMW", "Ann even.wmw"}, "", {"Ann ", ""}, ""},
      {{"annEVEN.WMW", "AEVEN.WMW"}, "Ann", {"A", "ann"}, "A"},  // letter case counts
      {{"AEVEN.WMW", "EVEN.WMW.old", "BEVEN.WM"}, "A", {"A"}, "A"},
      {{}, "A", {}, ""},
  };
  for (const auto& c : cases) {
    TestPlatform own;
    own.files.PutFolder("C:\\Data\\FolderEVEN.WMW");
    for (const std::string& file : c.files) own.files.Put("C:\\Data\\" + file, "");
    FolderPage fresh(manager);
    Start(fresh, c.wanted);
    EXPECT_EQ(ControlOf(fresh, 1022).items, c.offered) << c.wanted;
    EXPECT_EQ(ControlOf(fresh, 1022).text, c.selected) << c.wanted;
  }
}

// Whether a folder was chosen, and another one, decides what a browse changes.
TEST_F(FolderPageTest, BrowsingTakesAnotherFolderAndItsCalendars) {
  const struct {
    std::deque<std::string> answers;
    const char* folder;
    Stems offered;
    bool changed;
  } cases[] = {
      {{}, "C:\\Data", {""}, false},
      {{"C:\\Empty"}, "C:\\Data", {""}, false},
      {{"C:\\Data"}, "C:\\Data", {"A", ""}, false},
      {{"C:\\DATA"}, "C:\\DATA", {"A", ""}, true},  // compared by bytes
      {{"C:\\Empty", "C:\\New"}, "C:\\New", {""}, true},
  };
  for (const auto& c : cases) {
    platform.files.Delete("C:\\Data\\AEVEN.WMW");
    for (const char* folder : {"C:\\Data", "C:\\New"}) PutData(folder);
    FolderPage fresh(manager);
    Start(fresh, "Ann");
    platform.files.Put("C:\\Data\\AEVEN.WMW", "");
    platform.dialogs.folderAnswers = c.answers;
    Browse(fresh);
    EXPECT_EQ(ControlOf(fresh, 1008).text, c.folder);
    EXPECT_EQ(ControlOf(fresh, 1022).items, c.offered) << c.folder;
    Engine().pendingRefreshes.clear();
    fresh.Accept();
    EXPECT_EQ(Engine().pendingRefreshes.size(), c.changed ? 1U : 0U) << c.folder;
  }
  const auto& choice = platform.dialogs.folderChoices[0];
  EXPECT_EQ(choice.parent, pageWindow);
  EXPECT_EQ(choice.title, "PairWise Desktop");
  EXPECT_EQ(choice.startFolder, "C:\\Data");
  EXPECT_EQ(choice.help, "WMSource");
}

// What was typed or picked since the page was last left isn't the page's yet.
TEST_F(FolderPageTest, BrowsingGoesByWhatThePageHoldsNotByItsControls) {
  PutData("C:\\Data");
  PutData("C:\\New");
  for (const char* stem : {"B", "C"}) {
    platform.files.Put(std::string("C:\\New\\") + stem + "EVEN.WMW", "");
  }
  Start(page, "B");
  ControlOf(page, 1008).text = "C:\\New";
  ControlOf(page, 1022).text = "C";
  platform.dialogs.folderAnswers = {"C:\\Data\\"};
  Browse(page);
  EXPECT_EQ(platform.dialogs.folderChoices[0].startFolder, "C:\\Data");
  EXPECT_EQ(ControlOf(page, 1008).text, "C:\\New") << "chosen was what the page had";
  EXPECT_EQ(ControlOf(page, 1022).text, "") << "of the folder that was chosen";
  platform.dialogs.folderAnswers = {"C:\\New"};
  Browse(page);
  EXPECT_EQ(ControlOf(page, 1022).text, "B");
}

TEST_F(FolderPageTest, BrowsingBackDoesNotTakeTheChangeBack) {
  PutData("C:\\Data");
  PutData("C:\\New");
  Start(page, "A");
  platform.dialogs.folderAnswers = {"C:\\New"};
  Browse(page);
  platform.dialogs.folderAnswers = {"C:\\Data"};
  Browse(page);
  page.Accept();
  EXPECT_EQ(Engine().pendingRefreshes.size(), 1U);
}

TEST_F(FolderPageTest, AFolderWithoutARequiredFileCanNotBeChosen) {
  Start(page, "A");
  PutData("C:\\New");
  for (const char* file : kRequired) {
    platform.files.Delete("C:\\New\\" + Whole(file));
    platform.dialogs.folderAnswers = {"C:\\New"};
    Browse(page);
    ASSERT_EQ(platform.dialogs.folderChoices.back().complaints.size(), 1U) << file;
    EXPECT_NE(platform.dialogs.folderChoices.back().complaints[0].find(file), std::string::npos);
    platform.files.Put("C:\\New\\" + Whole(file), "");
  }
  EXPECT_EQ(ControlOf(page, 1008).text, "C:\\Data");
}

TEST_F(FolderPageTest, LeavingCutsOneBackslashOfWhatWasTyped) {
  const std::pair<const char*, const char*> cases[] = {
      {"D:\\Typed", "D:\\Typed"}, {"D:\\Typed\\", "D:\\Typed"}, {"D:\\\\", "D:\\"}, {"", ""}};
  Start(page, "A");
  for (const auto& [typed, taken] : cases) {
    ControlOf(page, 1008).text = typed;
    ControlOf(page, 1022).text = "Typed";
    EXPECT_TRUE(page.Leave());
    EXPECT_TRUE(page.Leave()) << "leaving again cuts no more";
    page.Apply(settings);
    EXPECT_EQ(Folder(), taken);
    EXPECT_STREQ(settings.String(PWConfig::kCalendarStem), "Typed");
  }
  page.Accept();
  EXPECT_TRUE(Engine().pendingRefreshes.empty()) << "a typed folder keeps the pairing";
  EXPECT_TRUE(platform.dialogs.boxes.empty());
}

TEST_F(FolderPageTest, AnEmptyCalendarIsToldOfAtEachLeave) {
  Start(page, "A");
  for (std::size_t leaves = 1; leaves <= 2; ++leaves) {
    EXPECT_TRUE(page.Leave());
    EXPECT_EQ(platform.dialogs.boxes.size(), leaves);
    EXPECT_EQ(page.Focus(), 1022);
  }
  EXPECT_EQ(platform.dialogs.boxes[0].text,
            "The calendar/task name can not be left empty. Please either type a file name or "
            "select one from the drop down list.");
  ControlOf(page, 1022).text = "B";
  EXPECT_TRUE(page.Leave());
  EXPECT_EQ(page.Focus(), 0);
}

TEST_F(FolderPageTest, AnotherFolderVoidsThePairingOfEveryCategory) {
  for (const char* name : {"contact", "memo"}) {
    auto* type = new PWAppSrcTypeInfo(name);
    for (const std::uint32_t bits : {7U, 4U}) {
      auto* category = new PWSourceCategory;
      category->Flags.bits = bits;
      type->Categories.Append(category, false);
    }
    source.Types.Append(type, false);
  }
  PutData("C:\\New");
  Start(page, "A");
  platform.dialogs.folderAnswers = {"C:\\New"};
  Browse(page);
  page.Accept();
  for (std::uint32_t i = 0; i < 2; ++i) {
    const auto& categories = static_cast<PWAppSrcTypeInfo*>(source.Types.At(i))->Categories;
    EXPECT_EQ(categories.At(0)->Flags.bits, 5U);
    EXPECT_EQ(categories.At(1)->Flags.bits, 4U);
  }
  ASSERT_EQ(Engine().pendingRefreshes.size(), 1U);
  EXPECT_EQ(Engine().pendingRefreshes[0].source, &source);
  EXPECT_TRUE(Engine().pendingRefreshes[0].flag);
  ASSERT_EQ(platform.dialogs.boxes.size(), 1U);
  EXPECT_EQ(platform.dialogs.boxes[0].text,
            "You will need to re-map your categories in the Data Contacts,\nCalendar, To Do List, "
            "and Memos dialogs.\n\n");
}

TEST_F(FolderPageTest, OnlyWhatHasChangedGoesToTheManagersSettings) {
  const struct {
    const char* folder;
    const char* stem;
    const char* managersFolder;
    const char* managersStem;
  } cases[] = {{"C:\\Data", "A", "M:\\", "M"},
               {"C:\\New", "A", "C:\\New", "M"},
               {"C:\\Data", "B", "M:\\", "B"},
               {"C:\\Data", "", "M:\\", "M"},
               {"", "B", "", "B"}};
  Start(page, "A");
  for (const auto& c : cases) {
    settings.String(PWConfig::kDataFolder, "C:\\Data");
    settings.String(PWConfig::kCalendarStem, "A");
    config.String(PWConfig::kDataFolder, "M:\\");
    config.String(PWConfig::kCalendarStem, "M");
    ControlOf(page, 1008).text = c.folder;
    ControlOf(page, 1022).text = c.stem;
    page.Leave();
    page.Apply(settings);
    EXPECT_EQ(Folder(), c.folder);
    EXPECT_TRUE(settings.String(PWConfig::kCalendarStem) == c.stem);
    EXPECT_TRUE(config.String(PWConfig::kDataFolder) == c.managersFolder) << c.folder;
    EXPECT_TRUE(config.String(PWConfig::kCalendarStem) == c.managersStem) << c.stem;
  }
}

}  // namespace
}  // namespace pw::options
