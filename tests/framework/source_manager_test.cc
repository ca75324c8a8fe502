#include "framework/source_manager.h"

#include <gtest/gtest.h>

#include "platform/testing/test_platform.h"
#include "tests/support/other_files.h"

namespace {

class Manager : public PWSourceManager {
 public:
  Manager() : PWSourceManager(77) {}
  const PWString& Name() override { return name; }
  PWSource* CreateSource(const char*) override { return nullptr; }
  void GetTypes(PWStringVector&) override {}
  std::uint32_t ReservedFlag() override { return 0; }
  PWRESULT AddSetupPages(CPropertySheet*) override { return kResultOk; }
  PWRESULT AddExtraSetupPages(CPropertySheet*) override { return kResultOk; }

 private:
  PWString name;
};

TEST(SourceManagerTest, OperationsHaveTheirDefaults) {
  Manager manager;
  PWSourceCategoryVector categories;
  PWStringVector names;
  EXPECT_EQ(manager.Owner, 77U);
  EXPECT_FALSE(manager.IsAvailable());
  EXPECT_TRUE(manager.IsInstalled());
  EXPECT_EQ(manager.ReservedQueryA() + manager.ReservedQueryB() + manager.ReservedQueryC(), 0U);
  EXPECT_EQ(manager.ClearSyncCategoryNames(), 0);
  EXPECT_FALSE(manager.ShowOptions(nullptr));
  EXPECT_EQ(manager.DeleteAllData(), 1);
  EXPECT_EQ(manager.LaunchApplication(), 1);
  EXPECT_EQ(manager.ReservedActionA(0), 1U);
  EXPECT_EQ(manager.ReservedActionB(0), 1U);
  EXPECT_EQ(manager.ListCategories("contact", categories), 1);
  EXPECT_EQ(manager.NewCategory("x", "contact", nullptr), 0);
  EXPECT_EQ(manager.DeleteCategory("contact", "x"), 1);
  EXPECT_EQ(manager.CategoryLimit("contact"), -1);
  EXPECT_FALSE(manager.IsSharedCategory("contact"));
  EXPECT_TRUE(manager.CategoryHeaderName().IsEmpty());
  EXPECT_EQ(manager.CategoryFieldNames("contact", "x", names), 1);
  EXPECT_EQ(manager.ReservedTriple(1, 2, 3), 2);
  EXPECT_EQ(manager.Icon(), nullptr);
  EXPECT_EQ(manager.RuntimeClass(), nullptr);
  EXPECT_EQ(manager.Clone(), nullptr);
  EXPECT_EQ(manager.Compare(&manager), -1);
}

TEST(SourceManagerTest, TheDestructorFreesIconAndLog) {
  class Log : public PWLog {
   public:
    explicit Log(bool& gone) : gone(gone) {}
    ~Log() override { gone = true; }
    void Add(const char*, ELogItemImage) override {}

   private:
    bool& gone;
  };
  pw::TestPlatform platform;
  bool gone = false;
  {
    Manager manager;
    manager.Log = new Log(gone);
    manager.IconHandle = platform.dialogs.LoadIcon(134);
    EXPECT_EQ(manager.Icon(), manager.IconHandle);
  }
  EXPECT_TRUE(gone);
  EXPECT_EQ(platform.dialogs.LiveIcons(), 0U);
}

class BackupTest : public testing::Test {
 protected:
  BackupTest() {
    manager.Config = &config;
    config.String(PWConfig::kDataFolder, "C:\\Data");
    platform.files.Put("C:\\Data\\a.wmw", "aaa");
    platform.files.Put("C:\\Data\\b.wmw", "bbb");
    platform.files.Put("C:\\Data\\Sub\\c.wmw", "ccc");
    platform.files.PutFolder("D:\\Backup");
  }

  pw::TestPlatform platform;
  PWConfig config;
  Manager manager;
  PWString out;
};

TEST_F(BackupTest, CopiesEveryFileOfTheDataFolder) {
  EXPECT_EQ(manager.Backup("D:\\Backup", &out), 0);
  EXPECT_TRUE(out == "D:\\Backup");
  EXPECT_EQ(platform.files.Get("D:\\Backup\\a.wmw"), "aaa");
  EXPECT_EQ(platform.files.Get("D:\\Backup\\b.wmw"), "bbb");
  EXPECT_FALSE(platform.files.Exists("D:\\Backup\\Sub"));
}

TEST_F(BackupTest, OverwritesNothingAndNamesTheFile) {
  platform.files.Put("D:\\Backup\\b.wmw", "older");
  EXPECT_EQ(manager.Backup("D:\\Backup", &out), 1);
  EXPECT_TRUE(out == "C:\\Data\\b.wmw");
  EXPECT_EQ(platform.files.Get("D:\\Backup\\b.wmw"), "older");
  EXPECT_EQ(manager.Backup("D:\\Nowhere", nullptr), 1);
  EXPECT_EQ(manager.Backup("D:\\Nowhere", &out), 1);
  EXPECT_TRUE(out == "D:\\Nowhere");
  for (const char* folder : {"", "C:\\Gone"}) {
    config.String(PWConfig::kDataFolder, folder);
    EXPECT_EQ(manager.Backup("D:\\Backup", &out), 1);
    EXPECT_TRUE(out == folder);
  }
  EXPECT_EQ(manager.Backup(nullptr, nullptr), 1);
}

TEST_F(BackupTest, ACopyThatDiffersIsAFailure) {
  class Forgetful : public pw::FilesWrapper {
   public:
    using FilesWrapper::FilesWrapper;
    bool CopyWithoutOverwriting(const std::string&, const std::string& to) override {
      return Open(to, pw::OpenMode::kCreateAlways, pw::Sharing::kNone)->Write("aab");
    }
  };
  const pw::test::InPlaceOfFiles<Forgetful> forgetful;
  EXPECT_EQ(manager.Backup("D:\\Backup", &out), 1);
  EXPECT_TRUE(out == "C:\\Data\\a.wmw");
  EXPECT_FALSE(platform.files.Exists("D:\\Backup\\a.wmw")) << "a bad copy isn't left";
}

}  // namespace
