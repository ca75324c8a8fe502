#include "framework/dialogs.h"

#include <gtest/gtest.h>

#include "platform/testing/test_platform.h"

namespace {

TEST(BrowseFolderTest, TakesOnlyAFolderThatHoldsAllThatIsRequired) {
  pw::TestPlatform platform;
  platform.files.Put("C:\\Some\\anncall.wmw", "");
  platform.files.Put("C:\\All\\ANNCALL.WMW", "");
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
  ASSERT_EQ(platform.dialogs.folderChoices[0].complaints.size(), 2U);
  EXPECT_NE(platform.dialogs.folderChoices[0].complaints[1].find("WMCard"), std::string::npos)
      << "a folder is no file";

  EXPECT_FALSE(PWBrowseFolder(pw::kNoWindow, "", "C:\\All", required).DoModal());
}

class Page : public CPropertyPage {
 public:
  explicit Page(int& accepted) : accepted(accepted) { controls.emplace_back().number = 1007; }
  std::string Caption() override { return "Page"; }
  void Accept() override { ++accepted; }
  using CPropertyPage::Control;

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

  Page page(accepted);
  EXPECT_EQ(page.Control(1007)->number, 1007);
  EXPECT_EQ(page.Control(1), nullptr);
}

}  // namespace
