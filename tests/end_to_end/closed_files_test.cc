#include <unistd.h>

#include <filesystem>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "platform/posix/path_table.h"
#include "platform/posix/posix_files.h"
#include "tests/end_to_end/process.h"
#include "tests/end_to_end/profile_backups.h"
#include "tests/platform/temp_folder.h"

// Files that a command which writes can't change.
namespace pw {
namespace {

namespace fs = std::filesystem;

constexpr uid_t kNobody = 65534;

class ClosedFilesTest : public testing::Test {
 protected:
  ClosedFilesTest() {
    const Finished made = RunPairwise({"demo", demo});
    EXPECT_EQ(made.code, 0) << made.messages;
    folder.Put("cards.csv", "First Name\r\nNew\r\n");
    backups = ListedBackups(demo);
  }

  Finished Run(std::vector<std::string> words, uid_t user = 0) const {
    words.insert(words.begin(), {"-p", demo});
    return RunPairwise(words, "", user);
  }

  FilesByName Data() const { return FilesIn(folder, "demo/data"); }
  fs::path InData(const char* name) const { return fs::path(demo) / "data" / name; }

  // Moves a file of the data elsewhere, and leaves a link to it.
  void MoveBehindLink(const char* name, const char* target) const {
    fs::create_directories((folder.Path() / target).parent_path());
    fs::rename(InData(name), folder.Path() / target);
    fs::create_symlink(folder.Path() / target, InData(name));
  }

  // Whatever there is another user may change.
  void OpenToAll() const {
    for (const auto& entry : fs::recursive_directory_iterator(folder.Path())) {
      fs::permissions(entry.path(), fs::perms(fs::is_directory(entry.path()) ? 0777 : 0666));
    }
    fs::permissions(folder.Path(), fs::perms(0777));
  }

  const TempFolder folder;
  const std::string demo = (folder.Path() / "demo").string();
  std::vector<std::string> backups;
};

TEST_F(ClosedFilesTest, BehindLinksThatLeadAwayAreToldAndLeftAlone) {
  folder.Put("out/letter.txt", std::string(82, 'x'));
  folder.Put("out/Outside.WMCard", folder.Get("demo/data/Friends.WMCard"));
  fs::create_symlink("../../out/letter.txt", InData("Letter.WMCard"));
  fs::create_symlink("../../out/Outside.WMCard", InData("Link.WMCard"));
  MoveBehindLink("Notebook.WMContent", "out/texts");
  MoveBehindLink("CLOCKS.DAT", "out/clocks");
  const FilesByName before = Data();
  const FilesByName outside = FilesIn(folder, "out");
  const std::string memos = (folder.Path() / "memos.json").string();
  const std::string clocks = (folder.Path() / "clocks.json").string();
  ASSERT_EQ(Run({"export", "memo", "-o", memos}).code, 0);
  ASSERT_EQ(Run({"export", "timezone", "-o", clocks}).code, 0);
  const struct {
    std::vector<std::string> words;
    int code;
    const char* file;
    const char* out;
  } cases[] = {
      {{"import", "contact", folder.Path() / "cards.csv", "--category", "Link"},
       4,
       "Link.WMCard",
       "0 records added\n"},
      {{"import", "memo", memos}, 4, "Notebook.WMContent", "0 records added\n"},
      {{"import", "timezone", clocks}, 4, "CLOCKS.DAT", "0 records added\n"},
      {{"remove", "contact", "Link", "--yes"}, 1, "Link.WMCard", ""},
      {{"wipe", "memo", "--yes"}, 4, "Notebook.WMContent", ""},
  };
  for (const auto& each : cases) {
    const Finished run = Run(each.words);
    EXPECT_EQ(run.code, each.code) << each.file;
    const std::string told = std::string(each.file) + ": leads to " + folder.Path().string();
    EXPECT_TRUE(Has(run.messages, told));
    EXPECT_EQ(run.messages.find(told), run.messages.rfind(told)) << "it is told once";
    EXPECT_TRUE(Has(run.messages, "name the folder that it leads to in [drives] of " + demo));
    EXPECT_EQ(run.out, each.out);
  }
  EXPECT_EQ(ListedBackups(demo), backups) << "told before anything was done";

  const Finished asked = Run({"wipe", "contact"});
  EXPECT_TRUE(Has(asked.messages,
                  "Delete all of contact (40 records; 'Letter' can't be read whole; "
                  "'Letter', 'Link' can't be changed)?"));
  EXPECT_EQ(Data(), before);
  EXPECT_EQ(Run({"wipe", "contact", "--yes"}).code, 4);
  EXPECT_NE(Data(), before) << "the others are emptied";
  EXPECT_EQ(FilesIn(folder, "out"), outside);
  EXPECT_TRUE(fs::is_symlink(InData("Link.WMCard")));
}

// A call says no more than that it fails.
TEST_F(ClosedFilesTest, BehindLinksThatLeadAwayAreNoneForADrive) {
  MoveBehindLink("Friends.WMCard", "out/cards");
  const std::string before = folder.Get("out/cards");
  const std::string location = R"("type":"contact","location":"C:\\Data\\Friends.WMCard"})";
  const Finished run =
      RunPairwise({"-p", demo, "drive"}, R"({"op":"open",)" + location + "\n" +
                                             R"({"op":"deletecategory",)" + location + "\n");
  EXPECT_EQ(run.code, 0);
  EXPECT_EQ(run.out, "{\"result\":1}\n{\"result\":1}\n");
  EXPECT_TRUE(Has(run.messages, "Friends.WMCard: leads to " + folder.Path().string()));
  EXPECT_EQ(folder.Get("out/cards"), before);
}

// Nothing of a calendar is written where one of its files can't be.
TEST_F(ClosedFilesTest, OfACalendarBehindALinkThatLeadsAwayStopTheRun) {
  MoveBehindLink("AdaTASK.WMW", "out/tasks");
  const FilesByName before = Data();
  for (const std::vector<std::string>& words :
       {std::vector<std::string>{"wipe", "todo"}, {"wipe", "calendar", "--yes"}, {"drive"}}) {
    const Finished run = Run(words);
    EXPECT_EQ(run.code, 1);
    EXPECT_TRUE(Has(run.messages, "AdaTASK.WMW: leads to "));
    EXPECT_TRUE(Has(run.messages, "; nothing was done\n"));
    EXPECT_FALSE(Has(run.messages, "Delete all")) << "nobody is asked in vain";
  }
  EXPECT_EQ(Data(), before);
}

// By where they really are: the data folder may be a link itself.
TEST_F(ClosedFilesTest, AreNotThoseBehindLinksThatStayWithinTheDrives) {
  std::string description = folder.Get("demo/profile.toml");
  description.replace(description.find("'C:\\Data' = 'data'"), 18, "C = 'c'");
  folder.Put("demo/profile.toml", description);
  MoveBehindLink("Friends.WMCard", "drive/Shared/cards");
  fs::rename(InData(""), folder.Path() / "data");
  fs::create_symlink(folder.Path() / "drive", fs::path(demo) / "c");
  fs::create_symlink(folder.Path() / "data", folder.Path() / "drive/Data");
  const std::string cards = folder.Get("drive/Shared/cards");
  const Finished wiped = Run({"wipe", "contact", "todo", "--yes"});
  EXPECT_EQ(wiped.code, 0) << wiped.messages;
  EXPECT_NE(folder.Get("drive/Shared/cards"), cards);
  EXPECT_TRUE(fs::is_symlink(folder.Path() / "data/Friends.WMCard"));
  EXPECT_EQ(Run({"restore", ListedBackups(demo).back()}).code, 0);
  EXPECT_EQ(folder.Get("drive/Shared/cards"), cards);
}

TEST_F(ClosedFilesTest, WithoutTheRightsAreToldAndLeftAlone) {
  if (::geteuid() != 0) GTEST_SKIP() << "needs another user to run as";
  OpenToAll();
  for (const char* file : {"Friends.WMCard", "Notebook.WMNoteHeader"}) {
    fs::permissions(InData(file), fs::perms(0444));
  }
  const bool mayRun = RunPairwise({"--help"}, "", kNobody).code == 0;
  if (!mayRun) GTEST_SKIP() << "the build is closed to others";
  const FilesByName before = Data();
  const Finished wiped = Run({"wipe", "contact", "memo", "--yes"}, kNobody);
  EXPECT_EQ(wiped.code, 4);
  for (const char* file : {"Friends.WMCard", "Notebook.WMNoteHeader"}) {
    EXPECT_TRUE(
        Has(wiped.messages, std::string(file) + ": can't be opened for reading and writing"));
  }
  EXPECT_TRUE(Has(wiped.messages, "there is nothing that can be deleted\n"));
  const Finished imported = Run({"import", "contact", folder.Path() / "cards.csv"}, kNobody);
  EXPECT_EQ(imported.code, 4);
  EXPECT_TRUE(Has(imported.messages, "Friends.WMCard: can't be opened for reading and writing"));
  EXPECT_FALSE(Has(imported.messages, "damaged"));

  // What is made anew needs the folder.
  fs::permissions(InData(""), fs::perms(0555));
  const Finished folderClosed = Run({"wipe", "calendar", "todo", "memo", "--yes"}, kNobody);
  EXPECT_EQ(folderClosed.code, 4);
  EXPECT_TRUE(Has(folderClosed.messages, "data: no file can be removed there and made anew"));
  EXPECT_EQ(folderClosed.out, "");
  EXPECT_EQ(Data(), before);
}

// What shows only when it is to be done.
TEST_F(ClosedFilesTest, ThatAnotherProgramKeepsAreNotCalledDeleted) {
  const PathTable table({{"C:", demo}}, demo);
  PosixFiles files(table, "");
  const auto kept = files.Open("C:\\data\\Friends.WMCard", OpenMode::kRead, Sharing::kRead);
  ASSERT_NE(kept, nullptr);
  const Finished run = Run({"wipe", "contact", "memo", "--yes"});
  EXPECT_EQ(run.code, 1);
  EXPECT_TRUE(Has(run.messages, "C:\\Data\\Friends.WMCard: could not be emptied\n"));
  EXPECT_EQ(run.out,
            "not all was deleted; there is still contact (40 records), memo (0 records)\n");
}

}  // namespace
}  // namespace pw
