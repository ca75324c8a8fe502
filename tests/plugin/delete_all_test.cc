#include <memory>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "cardfile/card_file.h"
#include "cardfile/new_file.h"
#include "framework/engine_context.h"
#include "memo/binder.h"
#include "plugin/file_object.h"
#include "plugin/source_manager.h"
#include "tests/support/binder_builder.h"
#include "tests/support/busy_organiser.h"
#include "tests/support/card_file_builder.h"
#include "tests/support/source_fixture.h"

namespace pw::test {
namespace {

class DeleteAllTest : public testing::Test {
 protected:
  DeleteAllTest() {
    manager.Config = &config;
    manager.Log = log;
    manager.ApplicationSource = &source;
    platform.files.PutFolder("C:\\Data");
    platform.registry.Set("SOFTWARE\\Gullwing\\PairWise Desktop\\Version 1\\Main", "Version",
                          NumberValue(50));
  }

  // A type of the engine that takes part, and one category of it, paired by a number.
  void Pair(const char* type, const std::string& location, std::uint32_t id = 5,
            bool syncing = true) {
    auto engine = std::make_unique<PWApplicationType>(type, syncing);
    auto mine = std::make_unique<PWSourceCategory>();
    mine->AppID = id;
    engine->CategoryVector().Append(mine.release(), false);
    Engine().types.push_back(std::move(engine));
    auto info = std::make_unique<PWAppSrcTypeInfo>(type);
    auto theirs = std::make_unique<PWSourceCategory>();
    theirs->AppID = id;
    theirs->Location = location.c_str();
    info->Categories.Append(theirs.release(), false);
    source.Types.Append(info.release(), false);
  }
  std::string Saved(const char* path) { return platform.files.Get(path).value_or("none"); }

  TestPlatform platform;
  PWConfig config;
  PWApplicationSource source;
  TestLog* log = new TestLog;  // the manager's
  WMSourceManager manager{0};
};

constexpr const char* kCards = "C:\\Data\\Friends.WMCard";

TEST_F(DeleteAllTest, EachTypeIsEmptiedInItsOwnWay) {
  platform.windows.Add("Wingmate_95");
  platform.files.Put(kCards, ThreeCards().Build());
  for (const char* name : {"Even.WMW", "Data.WMW", "Recr.WMW"}) {
    platform.files.Put(std::string("C:\\Data\\Ada") + name, "old");
  }
  platform.files.Put("C:\\Data\\AdaTASK.WMW", "old");
  PutBinder(platform.files, "C:\\Data\\Notes", TwoSections());
  Pair("contact", kCards);
  Pair("calendar", "C:\\Data\\Ada");
  Pair("todo", "C:\\Data\\Ada");
  Pair("timezone", "anything");
  Pair("memo", "C:\\Data\\Notes;Work");
  EXPECT_EQ(manager.DeleteAllData(), 0);
  EXPECT_EQ(SentSteps(platform), (Steps{0, 1, 3, 0, 1, 2, 0, 1, 3, 0, 1, 3}))
      << "the calendar alone is told to be changed";
  WMCardFile cards;
  ASSERT_EQ(cards.Load(kCards), 0);
  EXPECT_EQ(cards.CardCount(), 0U);
  std::vector<std::string> fields;
  cards.GetFieldNames(fields);
  EXPECT_EQ(fields.size(), 4U) << "they stay";
  EXPECT_EQ(Saved("C:\\Data\\AdaEven.WMW").substr(0, 9), "WMWCALE50");
  EXPECT_EQ(Saved("C:\\Data\\AdaRecr.WMW"), "none");
  EXPECT_EQ(Saved("C:\\Data\\AdaTASK.WMW").substr(0, 9), "WMWTASK50");
  EXPECT_EQ(Saved("C:\\Data\\AdaCALL.WMW").substr(0, 9), "WMWCALL50");
  WMBinder binder;
  ASSERT_EQ(binder.Open("C:\\Data\\Notes"), 0);
  EXPECT_EQ(binder.NoteCount(), 1U) << "the other section's";
  // Of the location without a file's name, cut as if it had one.
  EXPECT_EQ(platform.registry.Get("SOFTWARE\\Gullwing\\Pairwise 1.0\\Common", "Calls")->data,
            "C:\\call.wmw");
  EXPECT_EQ(log->lines, Lines());
}

TEST_F(DeleteAllTest, ACategoryWithoutANumberOrALocationIsPassedOver) {
  platform.windows.Add("Wingmate_95");
  platform.files.Put(kCards, ThreeCards().Build());
  PutBinder(platform.files, "C:\\Data\\Notes", TwoSections());
  Pair("contact", kCards, 0);
  Pair("todo", "");
  Pair("memo", "C:\\Data\\Notes;Work");
  EXPECT_EQ(manager.DeleteAllData(), 0);
  EXPECT_EQ(SentSteps(platform), (Steps{0, 1, 3})) << "of the memos";
  EXPECT_EQ(Saved(kCards), ThreeCards().Build());
}

TEST_F(DeleteAllTest, ACardfileWithoutCardsStaysSoAndTakesOthers) {
  CardFileBytes none = ThreeCards();
  none.cards.clear();
  const std::string blank = NewCardFile({"First Name", "Last Name", "Company"}, {"Last Name"});
  Pair("contact", kCards);
  platform.files.Put(kCards, none.Build());
  EXPECT_EQ(manager.DeleteAllData(), 0);
  EXPECT_EQ(Saved(kCards), none.Build());
  for (const std::string& before : {none.Build(), blank}) {
    platform.files.Put(kCards, before);
    EXPECT_EQ(manager.DeleteAllData(), 0);
    {
      WMCardFile file;
      ASSERT_EQ(file.Load(kCards), 0);
      EXPECT_EQ(file.CardCount(), 0U);
      std::vector<std::string> values = {"Ann", "Abel", "Acme", "met in May"};
      file.AddCard(values);
      file.Save();
    }
    WMCardFile file;
    ASSERT_EQ(file.Load(kCards), 0);
    EXPECT_EQ(file.CardCount(), 1U);
  }
}

TEST_F(DeleteAllTest, TheOrganiserIsToldOfAChangeWhereTheCallsCannotBeMade) {
  platform.windows.Add("Wingmate_95");
  platform.files.FailOpen("C:\\Data\\AdaCALL.WMW");
  Pair("todo", "C:\\Data\\Ada");
  EXPECT_EQ(manager.DeleteAllData(), 0);
  EXPECT_EQ(SentSteps(platform), (Steps{0, 1, 2}));
  EXPECT_EQ(Saved("C:\\Data\\AdaTASK.WMW").substr(0, 9), "WMWTASK50");
}

TEST_F(DeleteAllTest, WhatIsMissingOrDamagedIsPassedOver) {
  platform.windows.Add("Wingmate_95");
  Pair("contact", kCards);
  Pair("calendar", "C:\\Data\\Ada");
  EXPECT_EQ(manager.DeleteAllData(), 0);
  EXPECT_EQ(SentSteps(platform), Steps());
  platform.files.Put(kCards, "cut");
  platform.files.Put("C:\\Data\\AdaEven.WMW", "damaged, and without the files beside it");
  EXPECT_EQ(manager.DeleteAllData(), 0);
  EXPECT_EQ(SentSteps(platform), (Steps{0, 1, 0, 1, 3}))
      << "of a cardfile that can't be read no end is told";
  EXPECT_EQ(Saved(kCards), "cut");
}

TEST_F(DeleteAllTest, ABusyOrganiserEndsItWhereItIs) {
  platform.files.Put(kCards, ThreeCards().Build());
  PutBinder(platform.files, "C:\\Data\\Notes", TwoSections());
  MakeOrganiserBusy(platform);
  Pair("todo", "C:\\Data\\Ada", 5, false);
  Pair("memo", "C:\\Data\\Notes;Work");
  Pair("contact", kCards);
  config.String(PWConfig::kProductKey, "SOFTWARE\\Main");
  platform.registry.Set("SOFTWARE\\Main", "PRODUCT", NumberValue(3));
  EXPECT_EQ(manager.DeleteAllData(), 1);
  EXPECT_EQ(
      log->lines,
      Lines{"1 PWDesktop-E0001: All dialogs in Wingmate 99 must be closed before PairWise can "
            "synchronize its data."});
  EXPECT_EQ(Saved(kCards), ThreeCards().Build());
  delete manager.Log;
  manager.Log = nullptr;
  EXPECT_EQ(manager.DeleteAllData(), 1) << "also without a log";
}

TEST_F(DeleteAllTest, WhatWasEmptiedBeforeTheOrganiserIsBusyStaysSo) {
  platform.files.Put(kCards, ThreeCards().Build());
  PutBinder(platform.files, "C:\\Data\\Notes", TwoSections());
  MakeOrganiserBusy(platform);
  const WindowId organiser = platform.windows.Find("Wingmate_95");
  platform.windows.SetEnabled(organiser, true);
  platform.windows.SetAnswer(organiser, [&](const WindowMessage& message) {
    constexpr std::uint32_t kGaveUp = 3;
    if (message.wParam == kGaveUp) platform.windows.SetEnabled(organiser, false);
    return 0;
  });
  Pair("contact", kCards);
  Pair("memo", "C:\\Data\\Notes;Work");
  EXPECT_EQ(manager.DeleteAllData(), 1);
  EXPECT_EQ(SentSteps(platform), (Steps{0, 1, 3}));
  WMCardFile cards;
  ASSERT_EQ(cards.Load(kCards), 0);
  EXPECT_EQ(cards.CardCount(), 0U);
  EXPECT_EQ(Saved("C:\\Data\\Notes.WMNoteHeader"), TwoSections().Headers());
}

TEST_F(DeleteAllTest, AnUnknownTypeOrOneWithoutCategoriesEndsItAll) {
  platform.files.Put(kCards, ThreeCards().Build());
  Engine().types.push_back(std::make_unique<PWApplicationType>("memo", true));
  Pair("contact", kCards);
  EXPECT_EQ(manager.DeleteAllData(), 0);
  source.Types.Append(new PWAppSrcTypeInfo("memo"), false);
  EXPECT_EQ(manager.DeleteAllData(), 0);
  EXPECT_EQ(Saved(kCards), ThreeCards().Build());
  Engine().types.erase(Engine().types.begin());
  Engine().types[0]->CategoryVector().At(0)->AppID = 6;
  EXPECT_EQ(manager.DeleteAllData(), 0) << "paired with none";
  EXPECT_EQ(Saved(kCards), ThreeCards().Build());
}

TEST(FileObjectTest, IsLoadedByNameAndItsClonesShareWhatItHas) {
  EXPECT_NE(PWRuntimeClass::Find("WMFile"), nullptr);
  EXPECT_NE(PWRuntimeClass::Find("WMFileVector"), nullptr);
  auto file = std::make_unique<WMFile>();
  file->TextA = "a";
  file->Word = 7;
  file->ObjectA = std::make_shared<PWString>("shared");
  WMFileVector files;
  files.Append(file->Clone(), false);
  const std::unique_ptr<PWObject> clones(files.Clone());
  file.reset();
  const auto& clone = static_cast<WMFile&>(*static_cast<WMFileVector&>(*clones).At(0));
  EXPECT_EQ(clone.TextA.Str(), "a");
  EXPECT_EQ(clone.Word, 7U);
  EXPECT_EQ(static_cast<PWString&>(*clone.ObjectA).Str(), "shared");
}

}  // namespace
}  // namespace pw::test
