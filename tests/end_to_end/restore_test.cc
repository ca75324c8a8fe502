#include <sys/stat.h>

#include <csignal>
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

class RestoreTest : public testing::Test {
 protected:
  std::string Backup() const { return BackupOf(sample.Folder()); }
  FilesByName Files() const { return FilesIn(sample.folder, "c/Data"); }

  // A file that a run with too little room for it stops at, and what comes before and behind it.
  void PutLargeFile(char filling) const {
    sample.folder.Put("c/Data/Large", std::string(100'000, filling));
  }

  const Sample sample;
};

TEST_F(RestoreTest, BringsEveryByteBack) {
  EXPECT_EQ(sample.Run({"restore"}).messages,
            "there is no backup yet; `pairwise backup` makes one\n");
  sample.folder.Put("c/Data/empty", "");
  sample.folder.Put("c/Data/100% odd\nname", "x");
  sample.folder.Put("c/Data/inner/kept", "not one of the folder's own files");
  const auto before = Files();
  fs::permissions(sample.Cardfile(), fs::perms(0664));
  ASSERT_EQ(::geteuid() == 0 ? ::chown(sample.Cardfile().c_str(), 12, 34) : 0, 0);
  struct stat owned {};
  ::stat(sample.Cardfile().c_str(), &owned);
  const std::string name = Backup();
  EXPECT_EQ(ListedBackups(sample.Folder()), std::vector<std::string>{name});
  fs::remove(sample.folder.Path() / "c/Data/empty");
  fs::remove(sample.Cardfile());
  sample.folder.Put("c/Data/Friends.WMCard", "others");
  fs::permissions(sample.Cardfile(), fs::perms(0600));
  const auto changed = Files();
  const Finished restored = sample.Run({"restore", name});
  EXPECT_EQ(restored.code, 0) << restored.messages;
  EXPECT_EQ(restored.messages.substr(0, 14), "3 files are as");
  EXPECT_EQ(Files(), before);
  struct stat status {};
  ASSERT_EQ(::stat(sample.Cardfile().c_str(), &status), 0);
  EXPECT_EQ(status.st_mode & 0777, 0664U);
  EXPECT_EQ(status.st_uid, owned.st_uid);
  EXPECT_EQ(status.st_gid, owned.st_gid);
  // What was there before can be had again, and files of the person's own stay.
  sample.folder.Put("c/Data/new", "stays");
  EXPECT_EQ(sample.Run({"restore", ListedBackups(sample.Folder()).back()}).code, 0);
  auto expected = changed;
  expected["empty"] = "";
  expected["new"] = "stays";
  EXPECT_EQ(Files(), expected);
}

// The module removes a file whose name is written otherwise, and makes it anew in its own way.
TEST_F(RestoreTest, LeavesOneSpellingOfEachName) {
  const std::string demo = sample.Folder() + "/demo";
  ASSERT_EQ(RunPairwise({"demo", demo}).code, 0);
  const fs::path data = fs::path(demo) / "data";
  fs::rename(data / "AdaEVEN.WMW", data / "adaeven.wmw");
  fs::rename(data / "AdaTASK.WMW", data / "adatask.wmw");
  fs::rename(data / "AdaRecr.WMW", data / "ADARECR.wmw");
  const FilesByName before = FilesIn(sample.folder, "demo/data");
  const Finished events = RunPairwise({"-p", demo, "list", "calendar"});
  const std::string name = BackupOf(demo);
  ASSERT_EQ(RunPairwise({"-p", demo, "wipe", "calendar", "todo", "--yes"}).code, 0);
  EXPECT_NE(FilesIn(sample.folder, "demo/data"), before);
  const Finished restored = RunPairwise({"-p", demo, "restore", name});
  EXPECT_EQ(restored.code, 0) << restored.messages;
  EXPECT_FALSE(Has(restored.messages, "removed")) << "they are no other files";
  EXPECT_EQ(FilesIn(sample.folder, "demo/data"), before);
  EXPECT_EQ(RunPairwise({"-p", demo, "list", "calendar"}).out, events.out);

  // Where both were there they are two files.
  sample.folder.Put("demo/data/FRIENDS.wmcard", "another spelling");
  const std::string both = BackupOf(demo);
  EXPECT_EQ(RunPairwise({"-p", demo, "restore", both}).code, 0);
  EXPECT_EQ(sample.folder.Get("demo/data/FRIENDS.wmcard"), "another spelling");
  EXPECT_EQ(sample.folder.Get("demo/data/Friends.WMCard"), before.at("Friends.WMCard"));
}

TEST_F(RestoreTest, ReachesTheClocksThatTheOrganiserKeepsElsewhere) {
  sample.folder.Put("registry.reg",
                    sample.folder.Get("registry.reg") + "\"Data\"=\"C:\\\\Organiser\"\r\n");
  sample.folder.Put("c/Organiser/Clocks.dat", "the clocks");
  sample.folder.Put("c/Organiser/program.exe", "not a file that is written");
  sample.folder.Put("c/Organiser/EVEN.WMW", "of another profile");
  const std::string name = Backup();
  EXPECT_EQ(FilesIn(sample.folder, "backups/" + name + "/elsewhere-1"),
            (FilesByName{{"Clocks.dat", "the clocks"}}));
  sample.folder.Put("c/Organiser/Clocks.dat", "other clocks");
  sample.folder.Put("c/Organiser/RECR.WMW", "too");
  EXPECT_EQ(sample.Run({"restore", name}).code, 0);
  EXPECT_EQ(sample.folder.Get("c/Organiser/Clocks.dat"), "the clocks");
  EXPECT_EQ(sample.folder.Get("c/Organiser/RECR.WMW"), "too");
}

TEST_F(RestoreTest, ReachesTheDefaultUsersCalendarInAnotherFolder) {
  const std::string demo = sample.Folder() + "/demo";
  ASSERT_EQ(RunPairwise({"demo", demo}).code, 0);
  const auto replace = [&](const char* file, const std::string& from, const std::string& to) {
    std::string text = sample.folder.Get(file);
    text.replace(text.find(from), from.size(), to);
    sample.folder.Put(file, text);
  };
  replace("demo/profile.toml", "'C:\\Data' = 'data'", "'C:\\Data' = 'data'\n'C:\\Other' = 'other'");
  replace("demo/registry.reg", "C:\\\\Data\\\\Ada", "C:\\\\Other\\\\Ada");
  for (const auto& [file, bytes] : FilesIn(sample.folder, "demo/data")) {
    if (file.rfind("Ada", 0) != 0) continue;
    sample.folder.Put("demo/other/" + file, bytes);
    fs::remove(fs::path(demo) / "data" / file);
  }
  sample.folder.Put("demo/other/letter.txt", "the person's own");
  const FilesByName before = FilesIn(sample.folder, "demo/other");
  ASSERT_EQ(RunPairwise({"-p", demo, "wipe", "calendar", "todo", "--yes"}).code, 0);
  EXPECT_NE(FilesIn(sample.folder, "demo/other"), before);
  const std::string name = ListedBackups(demo).back();
  EXPECT_FALSE(fs::exists(fs::path(demo) / "backups" / name / "elsewhere-1/letter.txt"));
  // They go back to where they were, whomever the registry names meanwhile, and so does what was
  // there instead.
  const FilesByName wiped = FilesIn(sample.folder, "demo/other");
  replace("demo/registry.reg", "C:\\\\Other\\\\Ada", "C:\\\\Data\\\\Ada");
  EXPECT_EQ(RunPairwise({"-p", demo, "restore", name}).code, 0);
  EXPECT_EQ(FilesIn(sample.folder, "demo/other"), before);
  EXPECT_EQ(RunPairwise({"-p", demo, "restore", ListedBackups(demo).back()}).code, 0);
  EXPECT_EQ(FilesIn(sample.folder, "demo/other"), wiped);
}

TEST_F(RestoreTest, MakesADataFolderThatHasGoneAgain) {
  const auto before = Files();
  const std::string name = Backup();
  for (const char* gone : {"c/Data", "c"}) {
    fs::remove_all(sample.folder.Path() / gone);
    const Finished restored = sample.Run({"restore", name});
    EXPECT_EQ(restored.code, 0) << restored.messages;
    EXPECT_TRUE(Has(restored.messages, "c/Data: was not there, and is made again\n"));
    EXPECT_EQ(Files(), before);
  }
}

TEST_F(RestoreTest, OfABackupThatIsNotWholeIsRefused) {
  sample.folder.Put("c/Data/other", "x");
  const std::string name = Backup();
  const std::string inBackup = "backups/" + name + "/";
  const std::string list = sample.folder.Get(inBackup + "files.txt");
  sample.folder.Put("c/Data/other", "y");
  const auto refused = [&](const std::string& why) {
    const Finished run = sample.Run({"restore", name});
    EXPECT_EQ(run.code, 1);
    EXPECT_TRUE(Has(run.messages, "pairwise: backup " + name + " isn't whole: "));
    EXPECT_TRUE(Has(run.messages, why));
    EXPECT_EQ(sample.folder.Get("c/Data/other"), "y");
  };
  fs::remove(sample.folder.Path() / inBackup / "data/other");
  refused("data/other is missing");
  sample.folder.Put(inBackup + "data/other", "longer");
  refused("data/other has another size");
  sample.folder.Put(inBackup + "data/other", "x");
  sample.folder.Put(inBackup + "files.txt", list.substr(0, list.size() / 2));
  refused("files.txt, the list of its files, is missing or damaged");
  sample.folder.Put(inBackup + "files.txt", list);
  EXPECT_EQ(sample.Run({"restore", name}).code, 0);
  EXPECT_EQ(sample.folder.Get("c/Data/other"), "x");
}

// Of a calendar or a binder no file stays that doesn't fit the others.
TEST_F(RestoreTest, KeepsNewFilesButNotInOldCompany) {
  sample.folder.Put("c/Data/AdaEVEN.WMW", "events");
  sample.folder.Put("c/Data/AdaTASK.WMW", "tasks");
  const std::string name = Backup();
  const auto before = Files();
  for (const char* file : {"AdaRecr.WMW", "adadata.wmw", "AdaCALL.WMW", "BeaDATA.WMW", "new.WMCard",
                           "Ada.WMWrite", "adaeven.wmw.txt"}) {
    sample.folder.Put(std::string("c/Data/") + file, "new");
  }
  const Finished restored = sample.Run({"restore", name});
  EXPECT_TRUE(Has(restored.messages, "c/Data/AdaRecr.WMW: not in " + name + ", so it is removed"));
  auto expected = before;
  for (const char* file :
       {"AdaCALL.WMW", "BeaDATA.WMW", "new.WMCard", "Ada.WMWrite", "adaeven.wmw.txt"}) {
    expected[file] = "new";
  }
  EXPECT_EQ(Files(), expected);
}

TEST_F(RestoreTest, ThatFailsTellsHowFarItCame) {
  PutLargeFile('a');
  sample.folder.Put("c/Data/Zoo", "before");
  const std::string name = Backup();
  sample.folder.Put("c/Data/Friends.WMCard", "changed");
  sample.folder.Put("c/Data/Large", "small");
  const Finished failed = RunWithLargestFile(50'000, {"-p", sample.Folder(), "restore", name});
  EXPECT_EQ(failed.code, 1);
  const std::string saved = ListedBackups(sample.Folder()).back();
  EXPECT_TRUE(Has(failed.messages,
                  "c/Data/Large: File too large; put back so far: Friends.WMCard; "
                  "what was there before is in backup " +
                      saved));
  EXPECT_TRUE(
      Has(sample.Run({"restore"}).messages, "`pairwise restore " + saved + "` brings back"));
  EXPECT_EQ(sample.Run({"restore", saved}).code, 0);
  EXPECT_EQ(sample.folder.Get("c/Data/Friends.WMCard"), "changed");
  EXPECT_EQ(sample.Run({"restore"}).messages, "");

  // Where nothing was put back nothing is in between.
  fs::remove(sample.Cardfile());
  fs::create_directory(sample.Cardfile());
  const Finished none = sample.Run({"restore", name});
  EXPECT_EQ(none.code, 1);
  EXPECT_TRUE(Has(none.messages, "Friends.WMCard: Is a directory; nothing was put back"));
  EXPECT_EQ(sample.Run({"restore"}).messages, "");
}

TEST_F(RestoreTest, ThatIsKilledIsToldAndLeavesNothingInTheEnd) {
  PutLargeFile('a');
  const std::string name = Backup();
  sample.folder.Put("c/Data/Friends.WMCard", "changed");
  sample.folder.Put("c/Data/Large", "small");
  const auto before = Files();
  const Finished killed =
      RunWithLargestFile(50'000, {"-p", sample.Folder(), "restore", name}, true);
  EXPECT_EQ(killed.code, 128 + SIGXFSZ);
  EXPECT_EQ(Files().size(), before.size() + 1) << "the temporary file is there";
  const std::string saved = ListedBackups(sample.Folder()).back();
  EXPECT_TRUE(
      Has(sample.Run({"restore"}).messages, "`pairwise restore " + saved + "` brings back"));
  EXPECT_EQ(FilesIn(sample.folder, "backups/" + saved + "/data"), before);
  EXPECT_EQ(sample.Run({"restore", saved}).code, 0);
  EXPECT_EQ(Files(), before);
}

TEST_F(RestoreTest, TakesTheLongestNames) {
  const std::string longest(255, 'n');
  sample.folder.Put("c/Data/" + longest, "before");
  const std::string name = Backup();
  sample.folder.Put("c/Data/" + longest, "after");
  EXPECT_EQ(sample.Run({"restore", name}).code, 0);
  EXPECT_EQ(sample.folder.Get("c/Data/" + longest), "before");
}

}  // namespace
}  // namespace pw
