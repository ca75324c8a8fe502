#include <algorithm>
#include <filesystem>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "tests/end_to_end/process.h"
#include "tests/end_to_end/profile_backups.h"
#include "tests/end_to_end/sample.h"

namespace pw {
namespace {

namespace fs = std::filesystem;

class BackupTest : public testing::Test {
 protected:
  std::string Backup() const { return BackupOf(sample.Folder()); }
  std::vector<std::string> Listed() const { return ListedBackups(sample.Folder()); }

  // One that holds something that the others don't.
  std::string NewBackup(int number) const {
    sample.folder.Put("c/Data/counted", std::to_string(number));
    return Backup();
  }
  std::vector<std::string> NewBackups(std::size_t count) const {
    std::vector<std::string> names(count);
    int number = 0;
    std::generate(names.begin(), names.end(), [&] { return NewBackup(number++); });
    return names;
  }
  fs::path InBackups(const std::string& name) const {
    return sample.folder.Path() / "backups" / name;
  }

  const Sample sample;
};

TEST_F(BackupTest, TenAreKept) {
  std::vector<std::string> names = NewBackups(12);
  names.erase(names.begin(), names.begin() + 2);
  EXPECT_EQ(Listed(), names);
  EXPECT_EQ(sample.Run({"restore", names.front()}).code, 0) << "also the oldest of them";
  EXPECT_EQ(Listed().front(), names.front());
  EXPECT_EQ(sample.folder.Get("c/Data/counted"), "2");
}

TEST_F(BackupTest, ANewOneIsTheLastAlsoOnceTheClockWasSetBack) {
  std::vector<std::string> names;
  const std::string first = Backup();
  for (int i = 0; i < 10; ++i) {
    names.push_back("2099-01-01T00-00-0" + std::to_string(i));
    fs::copy(InBackups(first), InBackups(names.back()), fs::copy_options::recursive);
  }
  fs::remove_all(InBackups(first));
  const std::string made = NewBackup(1);
  EXPECT_EQ(made, "2099-01-01T00-00-09-02");
  names.erase(names.begin());
  names.push_back(made);
  EXPECT_EQ(Listed(), names);
}

TEST_F(BackupTest, ThePersonsOwnFoldersAreLeftAloneAndLeftoversGo) {
  for (const char* own :
       {"0000 mine", "zz-keep", "2026-11-25", "2026-11-25T21-49-01-100", "x.unfinished"}) {
    sample.folder.Put(std::string("backups/") + own + "/file", own);
  }
  sample.folder.Put("backups/2026-11-25T21-49-01.unfinished/data/file", "of a killed one");
  std::vector<std::string> names = NewBackups(11);
  names.erase(names.begin());
  EXPECT_EQ(Listed(), names);
  EXPECT_EQ(sample.folder.Get("backups/0000 mine/file"), "0000 mine");
  EXPECT_EQ(sample.folder.Get("backups/x.unfinished/file"), "x.unfinished");
  EXPECT_FALSE(fs::exists(InBackups("2026-11-25T21-49-01.unfinished")));
  EXPECT_EQ(sample.Run({"restore", "zz-keep"}).messages,
            "pairwise: there is no backup 'zz-keep'; `pairwise restore` lists them\n");
}

// However often a command is refused, the good ones stay.
TEST_F(BackupTest, OfUnchangedFilesIsTheNewestOne) {
  const std::string good = Backup();
  sample.folder.Put("c/Data/Friends.WMCard", sample.folder.Get("c/Data/Friends.WMCard") + "x");
  const std::string newest = Backup();
  EXPECT_NE(newest, good);
  EXPECT_EQ(Backup(), newest);
  for (int i = 0; i < 10; ++i) EXPECT_EQ(sample.Run({"wipe", "contact"}).code, 2);
  EXPECT_EQ(Listed(), (std::vector<std::string>{good, newest}));
  fs::rename(sample.Cardfile(), sample.Folder() + "/c/Data/Foes.WMCard");
  EXPECT_NE(Backup(), newest) << "the same bytes under another name";
  fs::remove(InBackups(Listed().back()) / "files.txt");
  EXPECT_NE(Backup(), Listed().front()) << "one that isn't whole is none";
  EXPECT_EQ(Listed().size(), 4U);
}

TEST_F(BackupTest, ThatCannotBeMadeLeavesNothing) {
  sample.folder.Put("big/Data/Friends.WMCard", std::string(100'000, 'x'));
  fs::remove_all(sample.folder.Path() / "c/Data");
  for (const char* command : {"backup", "restore"}) sample.Run({command});
  const Finished none = sample.Run({"backup"});
  EXPECT_EQ(none.code, 1);
  EXPECT_TRUE(Has(none.messages, "no backup could be made, so nothing was done: "));
  EXPECT_TRUE(Has(none.messages, "c/Data: No such file or directory"));
  EXPECT_EQ(Listed(), std::vector<std::string>());

  // The file that is to blame is that of the backup.
  fs::rename(sample.folder.Path() / "big/Data", sample.folder.Path() / "c/Data");
  const Finished tooLarge = RunWithLargestFile(50'000, {"-p", sample.Folder(), "backup"});
  EXPECT_EQ(tooLarge.code, 1);
  EXPECT_TRUE(Has(tooLarge.messages, "nothing was done: " + InBackups("").string()));
  EXPECT_TRUE(Has(tooLarge.messages, ".unfinished/data/Friends.WMCard: File too large"));
  EXPECT_TRUE(fs::is_empty(InBackups("")));

  fs::remove(InBackups(""));
  sample.folder.Put("backups", "a file");
  for (const Finished& run : {sample.Run({"restore"}), sample.Run({"backup"})}) {
    EXPECT_EQ(run.code, 1);
    EXPECT_TRUE(Has(run.messages, "backups: Not a directory"));
  }
}

TEST_F(BackupTest, HoldsNoLinksThatLeadAway) {
  const fs::path data = sample.folder.Path() / "c/Data";
  sample.folder.Put("elsewhere/Secret.WMCard", "not the organiser's");
  sample.folder.Put("c/Shared/Team.WMCard", "on the drive");
  fs::create_symlink("../../elsewhere/Secret.WMCard", data / "Away.WMCard");
  fs::create_symlink("../Shared/Team.WMCard", data / "Team.WMCard");
  fs::create_symlink("Loop.WMCard", data / "Loop.WMCard");
  fs::create_symlink("nowhere", data / "Dangling.WMCard");
  EXPECT_EQ(sample.Run({"info"}).code, 4) << "some can't be read";
  const std::string name = Backup();
  const FilesByName kept = FilesIn(sample.folder, "backups/" + name + "/data");
  EXPECT_EQ(kept.size(), 2U);
  EXPECT_EQ(kept.count("Team.WMCard"), 1U);
  sample.folder.Put("c/Shared/Team.WMCard", "changed");
  // What has become a link to another place since isn't written through.
  fs::rename(sample.Cardfile(), data / "Other.WMCard");
  fs::create_symlink("../../elsewhere/Secret.WMCard", sample.Cardfile());
  const Finished restored = sample.Run({"restore", name});
  EXPECT_EQ(restored.code, 0) << restored.messages;
  EXPECT_TRUE(Has(restored.messages, "Friends.WMCard: a link that leads away"));
  EXPECT_EQ(sample.folder.Get("c/Shared/Team.WMCard"), "on the drive");
  EXPECT_TRUE(fs::is_symlink(data / "Team.WMCard"));
  EXPECT_EQ(sample.folder.Get("elsewhere/Secret.WMCard"), "not the organiser's");
}

TEST_F(BackupTest, HoldsNothingOfAProfileInItsOwnDataFolder) {
  std::string description = sample.folder.Get("profile.toml");
  description.replace(description.find("C = 'c'"), 7, "'C:\\Data' = '.'");
  sample.folder.Put("profile.toml", description);
  sample.folder.Put("Friends.WMCard", "cards");
  const std::string name = Backup();
  EXPECT_EQ(FilesIn(sample.folder, "backups/" + name + "/data"),
            (FilesByName{{"Friends.WMCard", "cards"}}));
  sample.folder.Put("profile.toml", description + "# a remark\n");
  EXPECT_EQ(sample.Run({"restore", name}).code, 0);
  EXPECT_EQ(sample.folder.Get("profile.toml"), description + "# a remark\n");
}

TEST_F(BackupTest, KeepsRunsOfAllProfilesAwayFromTheFiles) {
  const Sample other;
  std::string description = other.folder.Get("profile.toml");
  description.replace(description.find("'c'"), 3, "'" + sample.Folder() + "/c'");
  other.folder.Put("profile.toml", description);
  const std::string name = Backup();
  Process run({"-p", sample.Folder(), "drive"});
  run.Write("{\"op\":\"name\"}\n");
  ASSERT_FALSE(run.ReadLine().empty());
  for (const std::vector<std::string>& words :
       {std::vector<std::string>{"drive"}, {"backup"}, {"restore", name}}) {
    const Finished refused = other.Run(words);
    EXPECT_EQ(refused.code, 1);
    EXPECT_TRUE(Has(refused.messages, "c/Data: a run of another profile is changing the files"));
  }
  const Finished list = sample.Run({"restore"});
  EXPECT_EQ(list.code, 0);
  EXPECT_EQ(list.out, name + "\n");
  EXPECT_EQ(list.messages, "") << "a run that goes on wasn't cut off";
  EXPECT_EQ(sample.Run({"restore", name}).code, 1);
  EXPECT_EQ(run.Finish().code, 0);
  EXPECT_EQ(other.Run({"drive"}).code, 0);
  EXPECT_EQ(FilesIn(sample.folder, "c/Data").size(), 1U) << "no lock is left there";
}

}  // namespace
}  // namespace pw
