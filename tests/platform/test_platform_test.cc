#include "platform/testing/test_platform.h"

#include <string>

#include <gtest/gtest.h>

#include "base/process_wide.h"
#include "tests/platform/whole_file.h"

namespace pw {
namespace {

ProcessWide<int> counter([] { return 7; });

TEST(TestPlatform, StandsWhileItLivesAndLeavesNothingBehind) {
  TestPlatform outer;
  {
    TestPlatform inner;
    inner.files.Put("C:\\f", "inner");
    EXPECT_EQ(ReadWholeFile(*CurrentPlatform().files, "C:\\f"), "inner");
    EXPECT_EQ(CurrentPlatform().clock->Now(), inner.clock.now);
    *counter = 8;
  }
  EXPECT_EQ(*counter, 7);
  EXPECT_EQ(CurrentPlatform().files, &outer.files);
}

class NoPages : public SheetModel {
 public:
  std::string Title() override { return "Sheet"; }
  std::vector<PageModel*> Pages() override { return {}; }
};

TEST(ScriptedDialogs, AnswersAsLaidReadyAndThenSafely) {
  ScriptedDialogs dialogs;
  NoPages sheet;
  dialogs.boxAnswers = {BoxAnswer::kYes};
  dialogs.sheetAnswers = {[](SheetModel&) { return SheetAnswer::kOk; }};
  dialogs.EnterHelp("context");
  EXPECT_EQ(dialogs.ShowMessage(kNoWindow, "", "first", kBoxYesNo), BoxAnswer::kYes);
  EXPECT_EQ(dialogs.ShowSheet(kNoWindow, sheet), SheetAnswer::kOk);
  dialogs.LeaveHelp();
  EXPECT_EQ(dialogs.ShowMessage(WindowId{3}, "", "second", kBoxYesNo), BoxAnswer::kNo);
  EXPECT_EQ(dialogs.ShowSheet(kNoWindow, sheet), SheetAnswer::kCancel);
  ASSERT_EQ(dialogs.boxes.size(), 2U);
  EXPECT_EQ(dialogs.boxes[0].help, "context");
  EXPECT_EQ(dialogs.boxes[1].text, "second");
  EXPECT_EQ(dialogs.boxes[1].parent, WindowId{3});
  EXPECT_EQ(dialogs.sheets.size(), 2U);
}

TEST(ScriptedDialogs, NamesFoldersUntilOneIsTaken) {
  ScriptedDialogs dialogs;
  dialogs.folderAnswers = {"bad", "good", "unused"};
  const FolderComplaint complaint = [](const std::string& folder) -> std::optional<std::string> {
    if (folder == "good") return std::nullopt;
    return "not " + folder;
  };
  EXPECT_EQ(dialogs.ChooseFolder(kNoWindow, "Where?", "start", complaint), "good");
  EXPECT_EQ(dialogs.ChooseFolder(kNoWindow, "Where?", "start", complaint), std::nullopt);
  ASSERT_EQ(dialogs.folderChoices.size(), 2U);
  EXPECT_EQ(dialogs.folderChoices[0].complaints, std::vector<std::string>{"not bad"});
  EXPECT_EQ(dialogs.folderChoices[1].complaints, std::vector<std::string>{"not unused"});
}

TEST(ScriptedDialogs, CountsIcons) {
  ScriptedDialogs dialogs;
  dialogs.missingIcons = {134};
  const IconHandle icon = dialogs.LoadIcon(129);
  EXPECT_EQ(dialogs.IconNumber(icon), 129);
  EXPECT_EQ(dialogs.LoadIcon(134), nullptr);
  EXPECT_EQ(dialogs.LiveIcons(), 1U);
  dialogs.DestroyIcon(icon);
  dialogs.DestroyIcon(nullptr);
  EXPECT_EQ(dialogs.LiveIcons(), 0U);
}

}  // namespace
}  // namespace pw
