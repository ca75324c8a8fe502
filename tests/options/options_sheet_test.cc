#include <string>
#include <vector>

#include "framework/engine_context.h"
#include "options/setup_page.h"
#include "platform/platform.h"
#include "tests/options/options_fixture.h"

namespace pw::options {
namespace {

using test::Browse;
using test::Choose;
using test::ControlOf;
using Texts = std::vector<std::string>;

class OptionsSheetTest : public test::OptionsTest {
 protected:
  // Shows the sheet, whose pages are shown and left in order after `work` on them.
  template <class Work>
  bool Show(SheetAnswer answer, Work work) {
    platform.dialogs.sheetAnswers.push_back([=, this](SheetModel& sheet) {
      const auto pages = sheet.Pages();
      for (PageModel* page : pages) page->Show(pageWindow);
      work(*pages[0], *pages[1]);
      for (PageModel* page : pages) EXPECT_TRUE(page->Leave());
      return answer;
    });
    return manager.ShowOptions(&settings);
  }

  PWConfig settings;
};

TEST_F(OptionsSheetTest, OnlyOkChangesAnything) {
  settings.String(PWConfig::kDataFolder, "C:\\Old");
  Engine().mainWindow = PWWindow(sheetWindow);
  const auto work = [](PageModel& synchronize, PageModel& folder) {
    Choose(synchronize, 1012);
    ControlOf(folder, 1008).text = "C:\\New\\";
    ControlOf(folder, 1022).text = "Ann";
    synchronize.Help();
    folder.Help();
  };
  EXPECT_TRUE(Show(SheetAnswer::kCancel, work));
  EXPECT_EQ(source.SyncMode, 1);
  EXPECT_STREQ(settings.String(PWConfig::kDataFolder), "C:\\Old");
  EXPECT_FALSE(Show(SheetAnswer::kOk, work));
  EXPECT_EQ(source.SyncMode, 0);
  for (PWConfig* each : {&settings, &config}) {
    EXPECT_STREQ(each->String(PWConfig::kDataFolder), "C:\\New");
    EXPECT_STREQ(each->String(PWConfig::kCalendarStem), "Ann");
  }
  EXPECT_EQ(platform.dialogs.sheets[0].parent, sheetWindow);
  EXPECT_EQ(platform.dialogs.sheets[0].help, "WMSource");
  EXPECT_EQ(platform.dialogs.helpShown, Texts(4, "WMSource"));
  EXPECT_TRUE(platform.dialogs.HelpContexts().empty());
}

TEST_F(OptionsSheetTest, APageThatWasNeverShownChangesNothing) {
  source.SyncMode = 3;
  settings.String(PWConfig::kDataFolder, "C:\\Old\\");
  platform.dialogs.sheetAnswers.push_back([](SheetModel&) { return SheetAnswer::kOk; });
  EXPECT_FALSE(manager.ShowOptions(&settings));
  EXPECT_EQ(source.SyncMode, 3);
  EXPECT_STREQ(settings.String(PWConfig::kDataFolder), "C:\\Old\\");
  EXPECT_TRUE(platform.dialogs.boxes.empty());
}

// Notes, when a box shows, which folder the settings name and how many refreshes are asked for.
class WatchedDialogs : public DialogsWrapper {
 public:
  WatchedDialogs(Dialogs& target, PWConfig& settings)
      : DialogsWrapper(target), settings(settings) {}
  BoxAnswer ShowMessage(WindowId, const std::string&, const std::string&, std::uint32_t) override {
    notes.push_back(settings.String(PWConfig::kDataFolder).Str() + " " +
                    std::to_string(Engine().pendingRefreshes.size()));
    return BoxAnswer::kOk;
  }
  Texts notes;

 private:
  PWConfig& settings;
};

TEST_F(OptionsSheetTest, TheRefreshIsAskedForBeforeTheSettingsNameTheNewFolder) {
  PutData("C:\\New");
  settings.String(PWConfig::kDataFolder, "C:\\Old");
  settings.String(PWConfig::kCalendarStem, "A");
  platform.files.Put("C:\\New\\AEVEN.WMW", "");
  platform.dialogs.folderAnswers = {"C:\\New"};
  WatchedDialogs watched(platform.dialogs, settings);
  Platform services = platform.Services();
  services.dialogs = &watched;
  SetPlatform(services);
  EXPECT_FALSE(Show(SheetAnswer::kOk, [](PageModel&, PageModel& folder) { Browse(folder); }));
  EXPECT_EQ(watched.notes, Texts{"C:\\Old 1"});
  EXPECT_STREQ(settings.String(PWConfig::kDataFolder), "C:\\New");
}

}  // namespace
}  // namespace pw::options
