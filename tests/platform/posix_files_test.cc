#include "platform/posix/posix_files.h"

#include <fcntl.h>
#include <poll.h>
#include <signal.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "platform/posix/descriptor.h"
#include "tests/platform/temp_folder.h"
#include "tests/platform/whole_file.h"

namespace pw {
namespace {

class PosixFilesTest : public testing::Test {
 protected:
  TempFolder folder;
  PathTable table{{{"C:", folder.Path()}, {"C:\\Fixed", folder.Path() / "fixed", true}}, "/none"};
  PosixFiles files{table, "C:\\module.so"};
};

TEST_F(PosixFilesTest, ChangesNothingOnAReadOnlyMount) {
  folder.Put("fixed/file", "1");
  folder.Put("other", "2");
  EXPECT_NE(files.Open("C:\\Fixed\\file", OpenMode::kRead, Sharing::kReadWrite), nullptr);
  for (const OpenMode mode :
       {OpenMode::kReadWriteExisting, OpenMode::kOpenAlways, OpenMode::kCreateAlways}) {
    EXPECT_EQ(files.Open("C:\\Fixed\\file", mode, Sharing::kReadWrite), nullptr);
    EXPECT_EQ(files.Open("C:\\Fixed\\new", mode, Sharing::kReadWrite), nullptr);
  }
  EXPECT_FALSE(files.Delete("C:\\Fixed\\file"));
  EXPECT_FALSE(files.CopyWithoutOverwriting("C:\\other", "C:\\Fixed\\new"));
  EXPECT_TRUE(files.CopyWithoutOverwriting("C:\\Fixed\\file", "C:\\copy"));
  EXPECT_TRUE(files.Exists("C:\\Fixed\\file"));
  EXPECT_FALSE(files.IsReadableAndWritable("C:\\Fixed\\file"));
  EXPECT_FALSE(files.IsReadableAndWritable("C:\\Fixed"));
  EXPECT_EQ(folder.Get("fixed/file"), "1");
  EXPECT_FALSE(std::filesystem::exists(folder.Path() / "fixed/new"));
}

// Only the drive may be changed, whose folder is reached by a link itself, and files beside the
// program by a path that starts there.
class LinkedFilesTest : public testing::Test {
 protected:
  LinkedFilesTest() {
    folder.Put("disk/Shared/team", "within");
    folder.Put("disk/Data/own", "own");
    folder.Put("here/note", "note");
    folder.Put("out/letter", "outside");
    std::filesystem::create_symlink("disk", folder.Path() / "c");
    Link("../../out/letter", "disk/Data/away");
    Link("../../out/new", "disk/Data/away-new");
    Link("../../out", "disk/Data/folder");
    Link("../../here/note", "disk/Data/here");
    Link("../Shared/team", "disk/Data/team");
    Link("../Shared/new", "disk/Data/new");
    Link("../disk/Data/own", "out/back");
    Link("loop", "disk/Data/loop");
  }

  void Link(const char* target, const char* name) const {
    std::filesystem::create_symlink(target, folder.Path() / name);
  }

  // Whether each way to change it is refused, or none is. The file goes, where it can.
  bool IsChangeable(const std::string& path) {
    const bool may = files.Open(path, OpenMode::kOpenAlways, Sharing::kReadWrite) != nullptr;
    EXPECT_EQ(files.IsReadableAndWritable(path), may) << path;
    EXPECT_EQ(files.Open(path, OpenMode::kReadWriteExisting, Sharing::kRead) != nullptr, may);
    EXPECT_EQ(files.Open(path, OpenMode::kCreateAlways, Sharing::kReadWrite) != nullptr, may);
    EXPECT_EQ(files.Delete(path), may) << path;
    return may;
  }

  TempFolder folder;
  PathTable table{{{"\\", "/", true}, {"C:", folder.Path() / "c"}}, folder.Path() / "here"};
  PosixFiles files{table, "C:\\module.so"};
};

TEST_F(LinkedFilesTest, WhatALinkLeadsToOutsideIsLookedAtButNotChanged) {
  EXPECT_EQ(ReadWholeFile(files, "C:\\Data\\away"), "outside");
  for (const char* path :
       {"C:\\Data\\away", "C:\\Data\\away-new", "C:\\Data\\folder\\letter", "C:\\Data\\folder\\new",
        "C:\\Data\\here", "C:\\Data\\loop", "C:\\Data\\missing\\new"}) {
    EXPECT_FALSE(IsChangeable(path)) << path;
  }
  EXPECT_FALSE(files.CopyWithoutOverwriting("C:\\Data\\own", "C:\\Data\\folder\\copy"));
  EXPECT_FALSE(files.CopyWithoutOverwriting("C:\\Data\\own", "C:\\Data\\away-new"));
  EXPECT_FALSE(files.Delete("C:\\Data\\folder\\back")) << "a name outside of what is within";
  EXPECT_EQ(folder.Get("out/letter"), "outside");
  EXPECT_EQ(folder.Get("here/note"), "note");
  EXPECT_FALSE(std::filesystem::exists(folder.Path() / "out/new"));
  EXPECT_TRUE(std::filesystem::is_symlink(folder.Path() / "disk/Data/away"));
}

TEST_F(LinkedFilesTest, WhatALinkLeadsToWithinIsChanged) {
  EXPECT_NE(files.Open("C:\\Data\\new", OpenMode::kCreateAlways, Sharing::kReadWrite), nullptr);
  EXPECT_TRUE(std::filesystem::exists(folder.Path() / "disk/Shared/new"));
  for (const char* path : {"C:\\Data\\team", "C:\\Data\\own", "C:\\Data\\fresh", "note"}) {
    EXPECT_TRUE(IsChangeable(path)) << path;
  }
  EXPECT_EQ(folder.Get("disk/Shared/team"), "") << "emptied, and then only the link was removed";
  EXPECT_TRUE(std::filesystem::exists(folder.Path() / "disk/Shared/team"));
}

TEST_F(PosixFilesTest, WhatIsNeitherFileNorFolderIsNotThereNorOpenedForALook) {
  const std::string pipe = folder.Path() / "pipe";
  ASSERT_EQ(mkfifo(pipe.c_str(), 0600), 0);
  std::filesystem::create_symlink("nowhere", folder.Path() / "broken");
  folder.Put("file", "1");
  std::filesystem::create_symlink("file", folder.Path() / "link");
  for (const bool hasOtherEnd : {false, true}) {
    // Nothing waits for the pipe's other end, and who has it hears of nothing.
    const Descriptor reader(hasOtherEnd ? open(pipe.c_str(), O_RDONLY | O_NONBLOCK | O_CLOEXEC)
                                        : -1);
    for (const OpenMode mode : {OpenMode::kRead, OpenMode::kReadWriteExisting,
                                OpenMode::kOpenAlways, OpenMode::kCreateAlways}) {
      EXPECT_EQ(files.Open("C:\\pipe", mode, Sharing::kReadWrite), nullptr);
    }
    EXPECT_FALSE(files.CopyWithoutOverwriting("C:\\pipe", "C:\\new"));
    EXPECT_FALSE(files.Delete("C:\\pipe"));
    EXPECT_FALSE(files.Exists("C:\\pipe"));
    pollfd wait{reader.Number(), POLLIN, 0};
    EXPECT_EQ(poll(&wait, 1, 0), 0);
  }
  EXPECT_EQ(files.Open("/dev/null", OpenMode::kReadWriteExisting, Sharing::kReadWrite), nullptr);
  EXPECT_FALSE(files.CopyWithoutOverwriting("C:\\file", "C:\\broken"));
  EXPECT_FALSE(files.Exists("C:\\broken"));
  ASSERT_EQ(files.Find("C:\\*").size(), 2U);
  EXPECT_EQ(files.Find("C:\\*")[1].name, "link");
  EXPECT_EQ(ReadWholeFile(files, "C:\\link"), "1");
}

// A program that holds the file until it is asked for it.
int leased = -1;

TEST_F(PosixFilesTest, AFileThatAnotherProgramMustLetGoFirstIsWaitedFor) {
  folder.Put("file", "1");
  const Descriptor holder(open((folder.Path() / "file").c_str(), O_RDWR | O_CLOEXEC));
  leased = holder.Number();
  const auto before = signal(SIGIO, [](int) { fcntl(leased, F_SETLEASE, F_UNLCK); });
  const bool isLeased = fcntl(leased, F_SETLEASE, F_WRLCK) == 0;
  const auto read = ReadWholeFile(files, "C:\\file");
  signal(SIGIO, before);
  if (!isLeased) GTEST_SKIP() << "no leases on this file system";
  EXPECT_EQ(read, "1");
}

TEST_F(PosixFilesTest, LocksOfOtherProgramsRefuseNothing) {
  folder.Put("file", "1");
  const auto opens = [&](OpenMode mode, Sharing sharing = Sharing::kReadWrite) {
    return files.Open("C:\\file", mode, sharing) != nullptr;
  };
  const auto lockWhole = [&](short type) {
    Descriptor other(open((folder.Path() / "file").c_str(), O_RDWR | O_CLOEXEC));
    struct flock whole {};
    whole.l_type = type;
    whole.l_whence = SEEK_SET;
    EXPECT_EQ(fcntl(other.Number(), F_OFD_SETLK, &whole), 0);
    return other;
  };
  for (const short type : {F_RDLCK, F_WRLCK}) {
    const Descriptor other = lockWhole(type);
    EXPECT_TRUE(opens(OpenMode::kRead));
    EXPECT_TRUE(opens(OpenMode::kReadWriteExisting));
    EXPECT_TRUE(opens(OpenMode::kRead, Sharing::kRead));
  }
  // Nor do they let in whom this program's own would keep out.
  const auto alone = files.Open("C:\\file", OpenMode::kRead, Sharing::kNone);
  const Descriptor other = lockWhole(F_RDLCK);
  EXPECT_FALSE(opens(OpenMode::kRead));
}

TEST_F(PosixFilesTest, NeverFindsNamesThatTheOrganiserCannotHave) {
  for (const char* name : {"\xE4.txt", "\xCE\xB1.txt", "a\\b.txt", "\xC3\xA4.txt"}) {
    folder.Put(name, "");
  }
  const auto found = files.Find("C:\\*.txt");
  ASSERT_EQ(found.size(), 1U);
  EXPECT_EQ(found[0].name, "\xE4.txt");
}

TEST_F(PosixFilesTest, OfNamesThatDifferInCaseEachIsReached) {
  folder.Put("a.x", "lower");
  folder.Put("A.x", "upper");
  const auto found = files.Find("C:\\*.x");
  ASSERT_EQ(found.size(), 2U);
  EXPECT_EQ(ReadWholeFile(files, "C:\\" + found[0].name), "upper");
  EXPECT_EQ(ReadWholeFile(files, "C:\\" + found[1].name), "lower");
}

TEST_F(PosixFilesTest, SharingHoldsAcrossProcesses) {
  folder.Put("file", "1");
  // Whether another process may have the file.
  const auto other = [&](auto may) {
    const pid_t child = fork();
    if (child == 0) _exit(may() ? 1 : 0);
    int status = 0;
    waitpid(child, &status, 0);
    return WIFEXITED(status) && WEXITSTATUS(status) == 1;
  };
  const auto opens = [&](OpenMode mode) {
    return other([&] { return files.Open("C:\\file", mode, Sharing::kReadWrite) != nullptr; });
  };
  const auto deletes = [&] { return other([&] { return files.Delete("C:\\file"); }); };
  auto file = files.Open("C:\\file", OpenMode::kRead, Sharing::kRead);
  ASSERT_NE(file, nullptr);
  EXPECT_TRUE(opens(OpenMode::kRead));
  EXPECT_FALSE(opens(OpenMode::kReadWriteExisting));
  EXPECT_FALSE(deletes());
  file.reset();
  EXPECT_TRUE(opens(OpenMode::kReadWriteExisting));
  EXPECT_TRUE(deletes());
}

// As on a full disk, a file may grow to a limit only.
TEST_F(PosixFilesTest, LeavesNoPartOfACopyBehind) {
  folder.Put("large", std::string(300'000, 'x'));
  rlimit before{};
  ASSERT_EQ(getrlimit(RLIMIT_FSIZE, &before), 0);
  const auto oldHandler = signal(SIGXFSZ, SIG_IGN);
  const rlimit small{100'000, before.rlim_max};
  ASSERT_EQ(setrlimit(RLIMIT_FSIZE, &small), 0);
  const bool copied = files.CopyWithoutOverwriting("C:\\large", "C:\\copy");
  auto file = files.Open("C:\\written", OpenMode::kOpenAlways, Sharing::kReadWrite);
  const bool written = file != nullptr && file->Write(std::string(100'001, 'x'));
  setrlimit(RLIMIT_FSIZE, &before);
  signal(SIGXFSZ, oldHandler);
  EXPECT_FALSE(copied);
  EXPECT_FALSE(files.Exists("C:\\copy"));
  EXPECT_FALSE(written);
  EXPECT_EQ(file->Size(), 100'000U);
}

TEST_F(PosixFilesTest, ACopyHasTheRightsOfItsOriginal) {
  folder.Put("secret", "1");
  ASSERT_EQ(chmod((folder.Path() / "secret").c_str(), 0600), 0);
  ASSERT_TRUE(files.CopyWithoutOverwriting("C:\\secret", "C:\\copy"));
  struct stat status {};
  ASSERT_EQ(stat((folder.Path() / "copy").c_str(), &status), 0);
  EXPECT_EQ(status.st_mode & 0777U, 0600U);
}

}  // namespace
}  // namespace pw
