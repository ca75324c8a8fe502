#include <algorithm>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <map>
#include <sstream>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "tests/end_to_end/process.h"
#include "tests/end_to_end/sample.h"

namespace pw {
namespace {

namespace fs = std::filesystem;

class BackupTest : public testing::Test {
 protected:
  std::string Backup() const {
    const Finished made = sample.Run({"backup"});
    EXPECT_EQ(made.code, 0) << made.messages;
    return made.out.substr(0, made.out.find('\n'));
  }
  std::vector<std::string> Listed() const {
    std::istringstream in(sample.Run({"restore"}).out);
    return {std::istream_iterator<std::string>(in), {}};
  }

  // The data folder's files by their names.
  std::map<std::string, std::string> Files() const {
    std::map<std::string, std::string> files;
    for (const auto& entry : fs::directory_iterator(sample.folder.Path() / "c/Data")) {
      const std::string name = entry.path().filename().string();
      if (entry.is_regular_file()) files[name] = sample.folder.Get("c/Data/" + name);
    }
    return files;
  }

  const Sample sample;
};

TEST_F(BackupTest, BringsEveryByteBack) {
  EXPECT_EQ(sample.Run({"restore"}).messages,
            "there is no backup yet; `pairwise backup` makes one\n");
  sample.folder.Put("c/Data/empty", "");
  sample.folder.Put("c/Data/inner/kept", "not one of the folder's own files");
  const auto before = Files();
  const fs::path shared = sample.folder.Path() / "c/Data/Friends.WMCard";
  fs::permissions(shared, fs::perms(0664));
  const std::string name = Backup();
  EXPECT_EQ(Listed(), std::vector<std::string>{name});
  sample.Run(
      {"drive"},
      "{\"op\":\"open\",\"type\":\"contact\",\"location\":\"C:\\\\Data\\\\Friends.WMCard\"}\n"
      "{\"op\":\"first\"}\n{\"op\":\"delete\"}\n{\"op\":\"close\"}\n");
  fs::remove(sample.folder.Path() / "c/Data/empty");
  const auto changed = Files();
  EXPECT_NE(changed, before);
  const Finished restored = sample.Run({"restore", name});
  EXPECT_EQ(restored.code, 0) << restored.messages;
  EXPECT_EQ(restored.messages.substr(0, 14), "2 files are as");
  EXPECT_EQ(Files(), before);
  EXPECT_EQ(fs::status(shared).permissions(), fs::perms(0664)) << "as it had them";
  // What was there before can be had again.
  sample.folder.Put("c/Data/new", "stays");
  EXPECT_EQ(sample.Run({"restore", Listed().back()}).code, 0);
  auto expected = changed;
  expected["empty"] = "";
  expected["new"] = "stays";
  EXPECT_EQ(Files(), expected);
  EXPECT_EQ(sample.Run({"restore", "none"}).messages,
            "pairwise: there is no backup 'none'; `pairwise restore` lists them\n");
}

TEST_F(BackupTest, HoldsTheClocksThatTheOrganiserKeepsElsewhere) {
  sample.folder.Put("registry.reg",
                    sample.folder.Get("registry.reg") + "\"Data\"=\"C:\\\\Organiser\"\r\n");
  sample.folder.Put("c/Organiser/Clocks.dat", "the clocks");
  sample.folder.Put("c/Organiser/program.exe", "not a file that is written");
  const std::string name = Backup();
  sample.folder.Put("c/Organiser/Clocks.dat", "other clocks");
  EXPECT_EQ(sample.Run({"restore", name}).code, 0);
  EXPECT_EQ(sample.folder.Get("c/Organiser/Clocks.dat"), "the clocks");
  EXPECT_FALSE(fs::exists(sample.folder.Path() / "backups" / name / "organiser/program.exe"));
}

TEST_F(BackupTest, TenAreKept) {
  std::vector<std::string> names(12);
  std::generate(names.begin(), names.end(), [this] { return Backup(); });
  names.erase(names.begin(), names.begin() + 2);
  EXPECT_EQ(Listed(), names);
  EXPECT_EQ(sample.Run({"restore", names.front()}).code, 0) << "also the oldest of them";
  EXPECT_EQ(Listed().front(), names.front());
}

TEST_F(BackupTest, WhatCannotBeCopiedIsNoBackup) {
  fs::remove_all(sample.folder.Path() / "c/Data");
  const Finished none = sample.Run({"backup"});
  EXPECT_EQ(none.code, 1);
  EXPECT_TRUE(Has(none.messages, "c/Data: No such file or directory"));
  EXPECT_EQ(Listed(), std::vector<std::string>());
  EXPECT_TRUE(fs::is_empty(sample.folder.Path() / "backups"));
}

}  // namespace
}  // namespace pw
