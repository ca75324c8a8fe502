#include "host/backup_names.h"

#include <gtest/gtest.h>

#include "host/backup_list.h"

namespace pw {
namespace {

TEST(BackupName, HasItsFormAndAMomentThatThereIs) {
  for (const char* name :
       {"2026-11-25T21-49-01", "2024-02-29T00-00-00-02", "1999-12-31T23-59-59-99"}) {
    EXPECT_TRUE(IsBackupName(name)) << name;
  }
  for (const char* name :
       {"", "mine", "2026-11-25", "2026-11-25T21-49-01.unfinished", "2026-11-25T21-49-01-100",
        "2026-11-25T21-49-01-2", "2026-13-25T21-49-01", "2026-02-29T00-00-00",
        "2026-11-25T21:49:01", "2026-11-25T21-49-01-02-03"}) {
    EXPECT_FALSE(IsBackupName(name)) << name;
  }
}

TEST(BackupName, OfANewOneComesBehindAllThereAre) {
  constexpr std::int64_t kNow = 888840000;  // 1998-03-02 12:00
  struct Case {
    const char* latest;
    const char* next;
  };
  for (const Case& each : {Case{"", "1998-03-02T12-00-00"},
                           {"1998-03-02T11-59-59-07", "1998-03-02T12-00-00"},
                           {"1998-03-02T12-00-00", "1998-03-02T12-00-00-02"},
                           {"1998-03-02T12-00-00-09", "1998-03-02T12-00-00-10"},
                           {"1998-03-02T12-00-00-99", "1998-03-02T12-00-01"},
                           // The clock was set back.
                           {"2031-12-31T23-59-59", "2031-12-31T23-59-59-02"},
                           {"2031-12-31T23-59-59-99", "2032-01-01T00-00-00"}}) {
    EXPECT_EQ(NextBackupName(kNow, each.latest), each.next) << each.latest;
    EXPECT_LT(std::string(each.latest), each.next);
    EXPECT_TRUE(IsBackupName(each.next));
  }
}

TEST(BackupListText, GivesWhatWasListedButNothingOnceCut) {
  const BackupList list = {
      {PlaceKind::kData, "C:\\D\xE4ta", {{"Friends.WMCard", 1482}, {"100% \n odd", 0}}},
      {PlaceKind::kCalendar, "", {}},
      {PlaceKind::kClocks, "C:\\Organiser", {{"CLOCKS.DAT", 812}}}};
  const std::string text = RenderBackupList(list);
  const auto read = ParseBackupList(text);
  ASSERT_TRUE(read);
  ASSERT_EQ(read->size(), list.size());
  for (std::size_t i = 0; i < list.size(); ++i) {
    EXPECT_EQ((*read)[i].kind, list[i].kind);
    EXPECT_EQ((*read)[i].location, list[i].location);
    ASSERT_EQ((*read)[i].files.size(), list[i].files.size());
    for (std::size_t j = 0; j < list[i].files.size(); ++j) {
      EXPECT_EQ((*read)[i].files[j].name, list[i].files[j].name);
      EXPECT_EQ((*read)[i].files[j].size, list[i].files[j].size);
    }
  }
  for (std::size_t size = 0; size < text.size(); ++size) {
    EXPECT_FALSE(ParseBackupList(text.substr(0, size))) << size;
  }
}

TEST(BackupListText, WithSomethingElseInItIsNone) {
  const std::string begin = "pairwise backup 1\npart data C:\\Data\n";
  EXPECT_TRUE(ParseBackupList(begin + "files 0\n"));
  for (const char* rest : {"file 1 ../out\nfiles 1\n", "file 1 ..\nfiles 1\n",
                           "file x a\nfiles 1\n", "file 1\nfiles 1\n", "file 1 a\nfiles 2\n",
                           "files 0\nmore\n", "part other C:\\X\nfiles 0\n", "noise\nfiles 0\n"}) {
    EXPECT_FALSE(ParseBackupList(begin + rest)) << rest;
  }
  EXPECT_FALSE(ParseBackupList("pairwise backup 1\nfiles 0\n"));
  EXPECT_FALSE(ParseBackupList("pairwise backup 1\nfile 1 a\nfiles 1\n"));
}

}  // namespace
}  // namespace pw
