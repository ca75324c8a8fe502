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
