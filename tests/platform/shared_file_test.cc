#include "platform/posix/shared_file.h"

#include <fcntl.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <filesystem>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "tests/platform/other_user.h"
#include "tests/platform/temp_folder.h"

namespace pw {
namespace {

using Milliseconds = std::chrono::milliseconds;

class SharedFileTest : public ::testing::Test {
 protected:
  // A file of that owner and mode in a folder where everybody may do everything.
  void PutAs(uid_t user, gid_t group, mode_t mode) {
    std::filesystem::remove(lockFile);
    std::filesystem::remove(file);
    folder.Put("f", "old");
    ASSERT_EQ(chown(file.c_str(), user, group), 0);
    ASSERT_EQ(chmod(file.c_str(), mode), 0);
    ASSERT_EQ(chmod(folder.Path().c_str(), 0777), 0);
  }
  bool CanLock() const { return !SharedFileLock(file, Milliseconds(0)).Error(); }
  std::vector<std::string> Files() const {
    std::vector<std::string> names;
    for (const auto& entry : std::filesystem::directory_iterator(folder.Path())) {
      names.push_back(entry.path().filename());
    }
    std::sort(names.begin(), names.end());
    return names;
  }

  TempFolder folder;
  std::filesystem::path file = folder.Path() / "f";
  std::filesystem::path lockFile = folder.Path() / "f.lock";
};

// Who makes the lock, and who takes it afterwards.
TEST_F(SharedFileTest, ALockIsOpenToAllWhoMayReplaceTheFile) {
  if (!MayBecomeOthers()) GTEST_SKIP() << "only root can become somebody else";
  const struct {
    uid_t owner;
    gid_t group;
    mode_t mode;
    uid_t first;
    std::vector<gid_t> groupsOfFirst;
    uid_t second;
    std::vector<gid_t> groupsOfSecond;
  } cases[] = {
      {1, 1, 0600, 0, {}, 1, {}},
      {1, 1, 0644, 0, {}, 1, {}},
      {1, 2, 0660, 0, {}, 3, {2}},
      {1, 2, 0660, 3, {2}, 4, {2}},
      {1, 2, 0660, 3, {2}, 1, {}},  // who isn't in the file's group,
                                    // but its owner
      {0, 0, 0666, 3, {}, 4, {}},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(&c - cases);
    PutAs(c.owner, c.group, c.mode);
    EXPECT_EQ(AsUser(c.first, c.groupsOfFirst,
                     [&] {
                       umask(077);
                       return CanLock();
                     }),
              1);
    EXPECT_EQ(AsUser(c.second, c.groupsOfSecond, [&] { return MayReplace(file) && CanLock(); }), 1);
  }
}

TEST_F(SharedFileTest, ALockThatMayBeReadOnlyIsALockAllTheSame) {
  if (!MayBecomeOthers()) GTEST_SKIP() << "only root can become somebody else";
  PutAs(1, 1, 0600);
  folder.Put("f.lock", "");
  ASSERT_EQ(chmod(lockFile.c_str(), 0644), 0);
  const auto canLock = [&] { return MayReplace(file) && CanLock(); };
  EXPECT_EQ(AsUser(1, {}, canLock), 1);
  const SharedFileLock ours(file);
  EXPECT_EQ(AsUser(1, {}, [&] { return CanLock(); }), 0) << "and excludes others";
}

TEST_F(SharedFileTest, ALockThatCantBeOpenedIsAnErrorThatNamesIt) {
  PutAs(geteuid(), getegid(), 0600);
  std::filesystem::create_directory(lockFile);
  EXPECT_FALSE(MayReplace(file));
  const SharedFileLock lock(file);
  ASSERT_NE(lock.Error(), std::nullopt);
  EXPECT_NE(lock.Error()->find(lockFile.native()), std::string::npos);
  if (!MayBecomeOthers()) return;
  PutAs(1, 1, 0600);
  folder.Put("f.lock", "");
  ASSERT_EQ(chmod(lockFile.c_str(), 0600), 0);
  EXPECT_EQ(AsUser(1, {}, [&] { return MayReplace(file) || CanLock(); }), 0);
}

TEST_F(SharedFileTest, ALockThatIsntLetGoIsGivenUp) {
  SharedFileLock first(file);
  EXPECT_EQ(first.Error(), std::nullopt);
  const SharedFileLock second(file, Milliseconds(0));
  ASSERT_NE(second.Error(), std::nullopt);
  EXPECT_NE(second.Error()->find(lockFile.native()), std::string::npos);
}

// Files whose sizes are larger or smaller than what can be read, as those are that just change.
TEST_F(SharedFileTest, OtherThanItsSizeTellsAFileIsNoContent) {
  folder.Put("f", "12345");
  EXPECT_EQ(ReadSharedFile(file, 5).bytes, "12345");
  EXPECT_EQ(ReadSharedFile(file, 5).stamp, StampOf(file));
  EXPECT_NE(ReadSharedFile(file, 4).error, std::nullopt);
  // Of one the size is too small, of the other too large.
  for (const char* const name :
       {"/proc/self/status", "/sys/kernel/mm/transparent_hugepage/enabled"}) {
    if (!std::filesystem::exists(name)) GTEST_SKIP() << "there is no " << name;
    const SharedFileContent content = ReadSharedFile(name, 1 << 20);
    EXPECT_NE(content.error, std::nullopt) << name;
    EXPECT_EQ(content.bytes, "") << name;
  }
}

TEST_F(SharedFileTest, OnlyTheContentThatIsMeantIsReplaced) {
  const auto none = StampOf(file);
  folder.Put("f", "old");
  const auto old = StampOf(file);
  folder.Put("f", "somebody else's");
  EXPECT_NE(ReplaceSharedFile(file, "new", none), std::nullopt);
  EXPECT_NE(ReplaceSharedFile(file, "new", old), std::nullopt);
  EXPECT_EQ(folder.Get("f"), "somebody else's");
  EXPECT_EQ(ReplaceSharedFile(file, "new", StampOf(file)), std::nullopt);
  EXPECT_EQ(folder.Get("f"), "new");

  std::filesystem::remove(file);
  EXPECT_NE(ReplaceSharedFile(file, "new", old), std::nullopt);
  EXPECT_TRUE(Files().empty());
  EXPECT_EQ(ReplaceSharedFile(file, "new", none), std::nullopt);
  EXPECT_EQ(Files(), std::vector<std::string>{"f"});
}

// The process dies over the first bytes, as there is room for no more.
TEST_F(SharedFileTest, WhatIsToTakeItsPlaceIsNobodyElsesAndIsRemovedLater) {
  folder.Put("f", "old");
  ASSERT_EQ(chmod(file.c_str(), 0640), 0);
  ASSERT_TRUE(!MayBecomeOthers() || chown(file.c_str(), 1, 2) == 0);
  const std::vector<std::string> own = {".f.new-", ".f.new-1.bak", "f", "f.new"};
  for (const std::string& name : own) folder.Put(name, "old");
  const pid_t child = fork();
  if (child == 0) {
    const rlimit none{0, 0};
    setrlimit(RLIMIT_CORE, &none);
    setrlimit(RLIMIT_FSIZE, &none);
    ReplaceSharedFile(file, "new", StampOf(file));
    _exit(0);
  }
  int status = 0;
  ASSERT_EQ(waitpid(child, &status, 0), child);
  ASSERT_TRUE(WIFSIGNALED(status));
  struct stat old {};
  struct stat left {};
  ASSERT_EQ(stat(file.c_str(), &old), 0);
  ASSERT_EQ(stat((folder.Path() / (".f.new-" + std::to_string(child))).c_str(), &left), 0);
  EXPECT_EQ(left.st_mode, old.st_mode);
  EXPECT_EQ(left.st_uid, old.st_uid);
  EXPECT_EQ(left.st_gid, old.st_gid);

  EXPECT_EQ(ReplaceSharedFile(file, "new", StampOf(file)), std::nullopt);
  EXPECT_EQ(Files(), own);
}

TEST_F(SharedFileTest, AnotherGroupGetsNoRightsToTheFile) {
  if (!MayBecomeOthers()) GTEST_SKIP() << "only root can become somebody else";
  const struct {
    std::vector<gid_t> groups;
    gid_t group;
    mode_t mode;
  } cases[] = {
      {{}, 1, 0606},
      {{2}, 2, 0666},
  };
  for (const auto& c : cases) {
    PutAs(0, 2, 0666);
    EXPECT_EQ(AsUser(1, c.groups, [&] { return !ReplaceSharedFile(file, "new", StampOf(file)); }),
              1);
    struct stat now {};
    ASSERT_EQ(stat(file.c_str(), &now), 0);
    EXPECT_EQ(now.st_uid, 1U);
    EXPECT_EQ(now.st_gid, c.group);
    EXPECT_EQ(now.st_mode & 07777U, c.mode);
  }
}

}  // namespace
}  // namespace pw
