#include <gtest/gtest.h>

#include "framework/engine_context.h"
#include "platform/testing/test_platform.h"
#include "plugin/source_manager.h"
#include "tests/support/binder_builder.h"
#include "tests/support/busy_organiser.h"
#include "tests/support/card_file_builder.h"
#include "tests/support/source_fixture.h"

namespace {

using Names = std::vector<std::string>;

constexpr const char* kPath = "C:\\Data\\Friends.WMCard";

class CategoriesTest : public testing::Test {
 protected:
  CategoriesTest() {
    manager.Config = &config;
    manager.ApplicationSource = &source;
    config.String(PWConfig::kDataFolder, "C:\\Data");
    config.String(PWConfig::kProductKey, "SOFTWARE\\Main");
    SetProduct(2);
  }
  void SetProduct(std::uint32_t product) {
    platform.registry.Set("SOFTWARE\\Main", "PRODUCT", pw::NumberValue(product));
  }
  Names FieldNames(const char* first = nullptr) {
    PWStringVector names;
    if (first != nullptr) names.AppendText(first);
    EXPECT_EQ(manager.CategoryFieldNames("contact", kPath, names), 0);
    Names texts;
    for (std::uint32_t i = 0; i < names.Count(); ++i) texts.push_back(names.At(i)->Str());
    return texts;
  }

  // The names of a type's categories.
  Names NamesOf(const char* type) {
    PWSourceCategoryVector categories;
    EXPECT_EQ(manager.ListCategories(type, categories), 0);
    Names names;
    for (std::uint32_t i = 0; i < categories.Count(); ++i) {
      names.push_back(categories.At(i)->Name.Str());
    }
    return names;
  }

  pw::TestPlatform platform;
  PWConfig config;
  PWApplicationSource source;
  WMSourceManager manager{0};
};

TEST_F(CategoriesTest, OneForEachCardfileInTheOrderOfTheirNames) {
  PWSourceCategoryVector categories;
  EXPECT_EQ(manager.ListCategories("contact", categories), 0);
  EXPECT_EQ(categories.Count(), 0U);
  for (const char* name : {"work.wmcard", "Friends.WMCard", "Friends.txt"}) {
    platform.files.Put(std::string("C:\\Data\\") + name, "");
  }
  EXPECT_EQ(manager.ListCategories("contact", categories), 0);
  ASSERT_EQ(categories.Count(), 2U);
  EXPECT_STREQ(categories.At(0)->Name(), "Friends");
  EXPECT_STREQ(categories.At(0)->Location, kPath);
  EXPECT_STREQ(categories.At(1)->Name(), "work");
  EXPECT_STREQ(categories.At(1)->Location, "C:\\Data\\work.wmcard");
  EXPECT_EQ(categories.At(0)->AppID, 0U);
  platform.files.PutFolder("C:\\Data\\Old.WMCard");
  EXPECT_EQ(NamesOf("contact"), (Names{"Friends", "Old", "work"})) << "a folder is one as well";
  EXPECT_EQ(manager.ListCategories("no such type", categories), 1);
  EXPECT_EQ(manager.ListCategories(nullptr, categories), 1);
}

// By "name at location" of the binders' sections.
TEST_F(CategoriesTest, OneForEachSectionOfABinder) {
  platform.windows.Add("Wingmate_95");
  pw::test::BinderBytes binder = pw::test::TwoSections();
  binder.sections[1].name = "Notes";
  binder.sections.push_back({"notes", 3});
  platform.files.Put("C:\\Data\\Notes.wmwrite", "");  // which keeps its letter case
  pw::test::PutBinder(platform.files, "C:\\Data\\Notes", binder);
  platform.files.Put("C:\\Data\\Alone.WMWrite", binder.Sections());
  PWSourceCategoryVector categories;
  EXPECT_EQ(manager.ListCategories("memo", categories), 0);
  std::vector<std::string> texts;
  for (std::uint32_t i = 0; i < categories.Count(); ++i) {
    texts.push_back(categories.At(i)->Name.Str() + " at " + categories.At(i)->Location.Str());
  }
  EXPECT_EQ(texts, (Names{"Work - Notes at C:\\Data\\Notes;Work", "Notes at C:\\Data\\Notes;Notes",
                          "notes - Notes at C:\\Data\\Notes;notes"}))
      << "the binder's own name is told by its letter case too";
  EXPECT_EQ(pw::test::SentSteps(platform), (pw::test::Steps{0, 1, 2, 0, 1, 2}))
      << "also around one that can't be opened";
}

TEST_F(CategoriesTest, ABinderOfABusyOrganiserHasNone) {
  pw::test::MakeOrganiserBusy(platform);
  for (const char* name : {"Notes", "Other"}) {
    platform.files.Put(std::string("C:\\Data\\") + name + ".WMWrite",
                       pw::test::TwoSections().Sections());
  }
  PWSourceCategoryVector categories;
  EXPECT_EQ(manager.ListCategories("memo", categories), 0);
  ASSERT_EQ(platform.dialogs.boxes.size(), 2U) << "one for each binder";
  EXPECT_EQ(platform.dialogs.boxes[0].text,
            "PairWise cannot connect to PairWise Desktop because it is busy.\n\nPlease close any "
            "open dialogs and try this operation again.");
  EXPECT_EQ(platform.dialogs.boxes[0].flags, 0x30U);
  EXPECT_EQ(platform.dialogs.boxes[0].parent, pw::Engine().mainWindow->Id());
  auto* log = new pw::test::TestLog;  // the manager's
  manager.Log = log;
  EXPECT_EQ(manager.ListCategories("memo", categories), 0);
  ASSERT_EQ(log->lines.size(), 2U);
  EXPECT_EQ(log->lines[0].substr(0, 17), "1 PWDesktop-E0001");
  EXPECT_EQ(platform.dialogs.boxes.size(), 2U) << "a run shows no dialogs";
  EXPECT_EQ(categories.Count(), 0U);
}

TEST_F(CategoriesTest, ToDoItemsAndCalendarHaveOneUnderTheirStem) {
  const auto locationOf = [&](const char* type, const char* name) -> std::string {
    PWSourceCategoryVector categories;
    if (manager.ListCategories(type, categories) != 0 || categories.Count() != 1) return "none";
    EXPECT_STREQ(categories.At(0)->Name(), name);
    return categories.At(0)->Location.Str();
  };
  const auto location = [&] {
    std::string found = locationOf("calendar", "Calendar");
    EXPECT_EQ(locationOf("todo", "Task"), found);
    return found;
  };
  EXPECT_EQ(location(), "none") << "neither a stem nor a default user";
  config.String(PWConfig::kCalendarStem, "Home");
  EXPECT_EQ(location(), "C:\\Data\\Home");
  config.String(PWConfig::kDataFolder, "");
  EXPECT_EQ(location(), "Home");
  config.String(PWConfig::kCalendarStem, "");
  platform.registry.Set("SOFTWARE\\Gullwing\\PairWise Desktop\\Version 1\\Calendar-Task",
                        "DefUserName", pw::TextValue("D:\\Wing\\Bea"));
  EXPECT_EQ(location(), "D:\\Wing\\Bea");
  EXPECT_EQ(config.String(PWConfig::kDataFolder), "D:\\Wing") << "and the rest follows";
}

TEST_F(CategoriesTest, FieldNamesAreThoseOfTheCardfileEachOnce) {
  pw::test::CardFileBytes bytes = pw::test::ThreeCards();
  bytes.names = "Phone\r\nCity\r\nPhone\r\nCity";
  bytes.names += std::string("\0 with a zero byte\r\n", 20);
  platform.files.Put(kPath, bytes.Build());
  EXPECT_EQ(FieldNames(), (Names{"Phone", "City", "Contact Log"}));
  EXPECT_EQ(FieldNames("City"), (Names{"City", "Phone", "Contact Log"}));
}

TEST_F(CategoriesTest, TheInformationManagerReportsOneNameLess) {
  platform.files.Put(kPath, pw::test::ThreeCards().Build());
  for (const std::uint32_t other : {1U, 3U, 9U}) {
    SetProduct(other);
    manager.Product = -1;
    EXPECT_EQ(FieldNames().size(), 4U) << other;
  }
  SetProduct(0);
  manager.Product = -1;
  EXPECT_EQ(FieldNames(), (Names{"First Name", "Last Name", "Company"}));
  platform.files.Put(kPath, "");
  EXPECT_TRUE(FieldNames().empty()) << "a file of no fields at all";
  platform.files.Put(kPath, pw::test::ThreeCards().Build());
  config.String(PWConfig::kProductKey, "SOFTWARE\\None");
  manager.Product = -1;
  EXPECT_EQ(FieldNames().size(), 4U) << "which edition it is can't be told";
}

TEST_F(CategoriesTest, FieldNamesOfOtherTypesAndOfNoFile) {
  PWStringVector names;
  EXPECT_EQ(manager.CategoryFieldNames("memo", kPath, names), 0);
  EXPECT_EQ(manager.CategoryFieldNames("contact", kPath, names), 1);
  EXPECT_EQ(manager.CategoryFieldNames("contact", nullptr, names), 1);
  EXPECT_EQ(manager.CategoryFieldNames(nullptr, nullptr, names), 0);
  EXPECT_EQ(names.Count(), 0U);
}

// A category that the engine paired before it had a file is made first, and the caller starts
// again.
TEST_F(CategoriesTest, AMissingCardfileIsMadeFirst) {
  class Recording : public WMSourceManager {
   public:
    using WMSourceManager::WMSourceManager;
    PWRESULT NewCategory(const char* name, const char* typeName, PWString* location) override {
      made.push_back(std::string(typeName) + " " + name);
      *location = "C:\\Data\\made";
      return kResultFailed;  // how it went doesn't matter
    }
    std::vector<std::string> made;
  };
  Recording recording(0);
  recording.Config = &config;
  recording.ApplicationSource = &source;
  auto* contacts = new PWAppSrcTypeInfo("contact");
  source.Types.Append(contacts, false);
  for (const char* location : {"", kPath}) {
    auto* category = new PWSourceCategory;
    category->Name = "Fresh";
    category->Location = location;
    contacts->Categories.Append(category, false);
  }
  platform.files.Put(kPath, pw::test::ThreeCards().Build());
  PWStringVector names;
  EXPECT_EQ(recording.CategoryFieldNames("contact", kPath, names), 11);
  EXPECT_EQ(names.Count(), 0U);
  EXPECT_EQ(recording.made, (Names{"contact Fresh"}));
  EXPECT_EQ(recording.CategoryFieldNames("contact", kPath, names), 0);
  EXPECT_EQ(recording.made.size(), 1U);
}

}  // namespace
