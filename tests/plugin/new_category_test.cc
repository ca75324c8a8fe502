#include <string>
#include <utility>
#include <vector>

#include <gtest/gtest.h>

#include "framework/engine_context.h"
#include "platform/testing/test_platform.h"
#include "plugin/source_manager.h"

namespace {

using Names = std::vector<std::string>;

constexpr const char* kMain = "SOFTWARE\\Gullwing\\PairWise Desktop\\Version 1\\Main";

class NewCategoryTest : public testing::Test {
 protected:
  NewCategoryTest() {
    manager.Config = &config;
    config.String(PWConfig::kDataFolder, "C:\\Data");
    config.String(PWConfig::kInstallFolder, "C:\\Program");
    platform.files.PutFolder("C:\\Data");
    platform.files.Put("C:\\Program\\Data\\crdstyle.dat",
                       "[Plain]Name\t\t\rlost\tPhone\r\n[B]b\r\n");
    platform.registry.Set(kMain, "SyncCatNames", pw::TextValue(""));
    platform.registry.Set(kMain, "Version", pw::NumberValue(50));
  }
  PWRESULT New(const char* type, const char* name) {
    location = "as before";
    return manager.NewCategory(name, type, &location);
  }
  void AnswerOk() {
    platform.dialogs.sheetAnswers.push_back([this](pw::SheetModel& sheet) {
      firstLine = sheet.Pages().front()->Controls().front().text;
      return pw::SheetAnswer::kOk;
    });
  }
  // Of the cardfile that was made last.
  Names FieldNames() {
    PWStringVector fields;
    EXPECT_EQ(manager.CategoryFieldNames("contact", location, fields), 0);
    Names names;
    for (std::uint32_t i = 0; i < fields.Count(); ++i) names.push_back(fields.At(i)->Str());
    return names;
  }
  std::string SyncNames() { return platform.registry.Get(kMain, "SyncCatNames")->data; }

  pw::TestPlatform platform;
  PWConfig config;
  WMSourceManager manager{0};
  PWString location;
  std::string firstLine;  // of the dialog that was shown last
};

TEST_F(NewCategoryTest, ACardfileIsMadeOfATemplate) {
  pw::Engine().mainWindow = PWWindow(platform.windows.Add("Engine"));
  AnswerOk();
  EXPECT_EQ(New("contact", " a/b:c "), 0);
  EXPECT_EQ(location.Str(), "C:\\Data\\a b c.WMCard");
  ASSERT_EQ(platform.dialogs.sheets.size(), 1U);
  EXPECT_EQ(platform.dialogs.sheets[0].help, "WMSource");
  EXPECT_EQ(platform.dialogs.sheets[0].parent, pw::Engine().mainWindow->Id());
  EXPECT_EQ(firstLine, "New cardfile: a b c.WMCard");
  EXPECT_EQ(FieldNames(), (Names{"Name", "Contact Log"})) << "a carriage return ends the list";
  EXPECT_EQ(New("contact", "a b c"), 1) << "it is there";
  EXPECT_EQ(location.Str(), "C:\\Data\\a b c.WMCard");
  EXPECT_EQ(platform.dialogs.sheets.size(), 1U);
  EXPECT_EQ(New("contact", "<>"), 1) << "nobody chooses";
  EXPECT_EQ(platform.files.Get("C:\\Data\\.WMCard"), std::nullopt);
  AnswerOk();
  EXPECT_EQ(New("contact", "<>"), 0) << "of the extension alone";
  EXPECT_EQ(FieldNames(), (Names{"Name", "Contact Log"}));
  EXPECT_EQ(location.Str(), "C:\\Data\\.WMCard");
  EXPECT_EQ(SyncNames(), "a b c.WMCard\ta b c.WMCard\t.WMCard\t.WMCard") << "made or not";
  AnswerOk();
  EXPECT_EQ(manager.NewCategory("d", "contact", nullptr), 0);
}

TEST_F(NewCategoryTest, AListThatNamesNoTemplateGivesNoFields) {
  platform.files.Put("C:\\Program\\Data\\crdstyle.dat", "Name\tPhone\r\n");
  AnswerOk();
  EXPECT_EQ(New("contact", "a"), 0);
  ASSERT_EQ(platform.dialogs.sheets.size(), 1U);
  EXPECT_EQ(platform.dialogs.sheets[0].parent, pw::kNoWindow) << "the engine has none";
  EXPECT_EQ(FieldNames(), (Names{"Contact Log"}));
}

TEST_F(NewCategoryTest, TheNamesOfNewCardfilesAreKeptInOnePlaceForAllEditions) {
  for (std::int32_t product = -1; product <= 3; ++product) {
    platform.registry.Set(kMain, "SyncCatNames", pw::TextValue("Old.WMCard"));
    manager.Product = product;
    EXPECT_EQ(New("contact", "a"), 1);
    EXPECT_EQ(SyncNames(), "Old.WMCard\ta.WMCard") << product;
  }
}

TEST_F(NewCategoryTest, WhatAFileCannotBeNamedByBecomesABlank) {
  const std::pair<const char*, const char*> cases[] = {
      {"a\\b*c|d\"e", "a b c d e"},
      {"?a<b>", "a b"},
      {"\ta\t", "\ta\t"},
      {" \ta ", "\ta"},
      {"a;b", "a;b"},
      {" | ", ""},
  };
  for (const auto& [name, clean] : cases) {
    New("calendar", name);
    EXPECT_EQ(location.Str(), std::string("C:\\Data\\") + clean);
  }
}

TEST_F(NewCategoryTest, ACalendarIsMadeAnewAndNoOther) {
  EXPECT_EQ(New("calendar", "Ada"), 1);
  EXPECT_EQ(location.Str(), "C:\\Data\\Ada");
  EXPECT_EQ(platform.files.Get("C:\\Data\\AdaEven.WMW"), std::nullopt);
  for (const char* name : {"Even.WMW", "Data.WMW", "Recr.WMW"}) {
    platform.files.Put(std::string("C:\\Data\\Ada") + name, "old");
  }
  EXPECT_EQ(New("todo", "Ada"), 1) << "the calendar is made anew, and no tasks";
  EXPECT_EQ(platform.files.Get("C:\\Data\\AdaEven.WMW")->substr(0, 9), "WMWCALE50");
  EXPECT_EQ(platform.files.Get("C:\\Data\\AdaTASK.WMW"), std::nullopt);
  EXPECT_EQ(New("todo", "Bob"), 0) << "where there is no calendar they are made";
  EXPECT_EQ(location.Str(), "C:\\Data\\Bob");
  EXPECT_NE(platform.files.Get("C:\\Data\\BobTASK.WMW"), std::nullopt);
  EXPECT_NE(platform.files.Get("C:\\Data\\BobCALL.WMW"), std::nullopt);
}

// The calls' file is the one that counts.
TEST_F(NewCategoryTest, ATaskListIsMadeIfItsCallsCanBe) {
  platform.files.FailOpen("C:\\Data\\AdaCALL.WMW");
  EXPECT_EQ(New("todo", "Ada"), 1);
  EXPECT_NE(platform.files.Get("C:\\Data\\AdaTASK.WMW"), std::nullopt);
  platform.files.FailOpen("C:\\Data\\BobTASK.WMW");
  EXPECT_EQ(New("todo", "Bob"), 0);
  EXPECT_NE(platform.files.Get("C:\\Data\\BobCALL.WMW"), std::nullopt);
}

TEST_F(NewCategoryTest, TheSecondByteOfACharacterOfTwoIsLeftAlone) {
  class TwoByteFiles : public pw::FilesWrapper {
   public:
    using FilesWrapper::FilesWrapper;
    bool IsLeadByte(unsigned char byte) override { return byte == 0x83; }
  };
  TwoByteFiles files(platform.files);
  pw::Platform services = platform.Services();
  services.files = &files;
  const pw::Platform before = pw::SetPlatform(services);
  EXPECT_EQ(New("contact", "\x83\\|\x83|\x83"), 1) << "nobody chose a template";
  EXPECT_EQ(location.Str(), "C:\\Data\\\x83\\ \x83|\x83.WMCard");
  pw::SetPlatform(before);
}

TEST_F(NewCategoryTest, ABinderHasTheCleanNameAndItsSectionTheOther) {
  EXPECT_EQ(New("memo", "a/b"), 0);
  EXPECT_EQ(location.Str(), "C:\\Data\\a b;a/b");
  EXPECT_NE(platform.files.Get("C:\\Data\\a b.WMContent"), std::nullopt);
  EXPECT_EQ(New("memo", "a/b"), 1);
  EXPECT_EQ(New("memo", "a?b"), 0) << "another section of it";
  EXPECT_EQ(New("timezone", "x"), 0);
  EXPECT_EQ(New("none", "x"), 1);
  EXPECT_EQ(location.Str(), "as before");
  EXPECT_EQ(SyncNames(), "");
}

TEST_F(NewCategoryTest, OnlyFilesAreDeleted) {
  platform.files.Put("C:\\Data\\a.WMCard", "");
  EXPECT_EQ(manager.DeleteCategory("contact", "C:\\Data\\a.WMCard"), 0);
  EXPECT_EQ(platform.files.Get("C:\\Data\\a.WMCard"), std::nullopt);
  EXPECT_EQ(manager.DeleteCategory("contact", "C:\\Data\\a.WMCard"), 1);
  EXPECT_EQ(manager.DeleteCategory("contact", "C:\\Data"), 1) << "a folder";
  EXPECT_EQ(manager.DeleteCategory("memo", "C:\\Data\\a;b"), 1);
  platform.files.Put("C:\\Data\\a;b", "");
  EXPECT_EQ(manager.DeleteCategory("memo", "C:\\Data\\a;b"), 0) << "a file of that very name";
  EXPECT_EQ(platform.files.Get("C:\\Data\\a;b"), std::nullopt);
  EXPECT_EQ(manager.DeleteCategory("calendar", "C:\\Data\\Ada"), 0);
  EXPECT_EQ(manager.DeleteCategory(nullptr, nullptr), 0);
}

}  // namespace
