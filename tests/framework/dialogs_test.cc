#include "framework/dialogs.h"

#include <memory>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "platform/testing/test_platform.h"

namespace {

TEST(BrowseFolderTest, TakesOnlyAFolderThatHoldsAllThatIsRequired) {
  pw::TestPlatform platform;
  for (const char* file : {"anncall.wmw", "CALL.WMW.old", "FriendsWMCard", "Friends.WMCard.old"}) {
    platform.files.Put(std::string("C:\\Some\\") + file, "");
  }
  platform.files.Put("C:\\All\\call.wmw", "");
  platform.files.Put("C:\\All\\Friends.wmcard", "");
  platform.files.PutFolder("C:\\Some\\Folder.WMCard");
  PWStringVector required;
  required.AppendText("CALL.WMW");
  required.AppendText("WMCard");

  platform.dialogs.folderAnswers = {"C:\\Nowhere", "C:\\Some", "C:\\All"};
  PWBrowseFolder browse(pw::kNoWindow, "PairWise Desktop", "C:\\Start", required);
  EXPECT_TRUE(browse.DoModal());
  EXPECT_TRUE(browse.Folder() == "C:\\All");
  ASSERT_EQ(platform.dialogs.folderChoices.size(), 1U);
  EXPECT_EQ(platform.dialogs.folderChoices[0].startFolder, "C:\\Start");
  EXPECT_EQ(platform.dialogs.folderChoices[0].title, "PairWise Desktop");
  EXPECT_EQ(platform.dialogs.folderChoices[0].complaints,
            (std::vector<std::string>{"There is no folder C:\\Nowhere.",
                                      "C:\\Some lacks: CALL.WMW, a .WMCard file."}));

  EXPECT_FALSE(PWBrowseFolder(pw::kNoWindow, "", "C:\\All", required).DoModal());
}

TEST(BrowseFolderTest, GivesAFolderInItsPlainSpellingUnlessItIsTheOneItStartedWith) {
  const struct {
    const char* start;
    const char* chosen;
    const char* folder;
  } cases[] = {{"C:\\Start", "C:\\Data\\", "C:\\Data"},
               {"C:\\Start", "C:/Data\\\\Old/", "C:\\Data\\Old"},
               {"C:\\Start", "C:\\", "C:"},
               {"C:\\Start", "\\mnt\\", "\\mnt"},
               {"C:\\Start", "Data\\", "Data"},
               {"C:\\Start\\", "C:\\Start\\", "C:\\Start\\"}};
  for (const auto& c : cases) {
    pw::TestPlatform platform;
    platform.dialogs.folderAnswers = {c.chosen};
    PWStringVector none;
    PWBrowseFolder browse(pw::kNoWindow, "", c.start, none);
    EXPECT_TRUE(browse.DoModal());
    EXPECT_EQ(browse.Folder().View(), c.folder);
  }
}

class Page : public CPropertyPage {
 public:
  explicit Page(int& accepted) : accepted(accepted) {}
  std::string Caption() override { return "Page"; }
  void Accept() override { ++accepted; }
  void Start() override { Add(1007, pw::ControlKind::kText, "old"); }
  using CPropertyPage::Control;
  using CPropertyPage::ReadText;
  using CPropertyPage::ShowText;
  using CPropertyPage::window;

 private:
  int& accepted;
};

TEST(PropertySheetTest, PagesAreAcceptedOnlyByOk) {
  pw::TestPlatform platform;
  int accepted = 0;
  CPropertySheet sheet("Options");
  sheet.AddPage(std::make_unique<Page>(accepted));
  sheet.AddPage(std::make_unique<Page>(accepted));
  EXPECT_EQ(sheet.DoModal(pw::kNoWindow), pw::SheetAnswer::kCancel);
  EXPECT_EQ(accepted, 0);
  platform.dialogs.sheetAnswers.push_back([](pw::SheetModel&) { return pw::SheetAnswer::kOk; });
  {
    const PWHelp help("WMSource", false);
    EXPECT_EQ(sheet.DoModal(pw::kNoWindow), pw::SheetAnswer::kOk);
  }
  EXPECT_EQ(accepted, 2);
  EXPECT_EQ(platform.dialogs.sheets[1].help, "WMSource");
  EXPECT_TRUE(platform.dialogs.HelpContexts().empty());
}

TEST(PropertyPageTest, HasItsControlsOnceItWasShown) {
  int accepted = 0;
  Page page(accepted);
  std::string text = "as it was";
  page.ShowText(1007, "nowhere");
  page.ReadText(1007, text);
  EXPECT_EQ(text, "as it was");
  page.Show(pw::WindowId{4});
  page.ShowText(1007, "new");
  page.Show(pw::WindowId{5});
  page.ReadText(1007, text);
  EXPECT_EQ(text, "new") << "showing it again doesn't start it again";
  EXPECT_EQ(page.Controls().size(), 1U);
  EXPECT_EQ(page.window, pw::WindowId{5});
  EXPECT_EQ(page.Control(1), nullptr);
}

}  // namespace
