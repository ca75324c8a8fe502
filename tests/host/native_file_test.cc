#include "host/native_file.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <gtest/gtest.h>

#include "host/profile_lock.h"
#include "tests/platform/temp_folder.h"

namespace pw {
namespace {

namespace fs = std::filesystem;

std::size_t FilesIn(const fs::path& folder) {
  return static_cast<std::size_t>(
      std::distance(fs::directory_iterator(folder), fs::directory_iterator()));
}

TEST(NativeFile, IsReplacedWholeAndKeepsItsRights) {
  const TempFolder folder;
  folder.Put("out.vcf", "old");
  fs::permissions(folder.Path() / "out.vcf", fs::perms(0640));
  fs::create_symlink("out.vcf", folder.Path() / "link.vcf");
  ASSERT_TRUE(WriteNativeFile(folder.Path() / "link.vcf", std::string("new\0bytes", 9)));
  EXPECT_EQ(folder.Get("out.vcf"), std::string("new\0bytes", 9));
  EXPECT_TRUE(fs::is_symlink(folder.Path() / "link.vcf"));
  EXPECT_EQ(fs::status(folder.Path() / "out.vcf").permissions(), fs::perms(0640));
  EXPECT_EQ(FilesIn(folder.Path()), 2U);
}

TEST(NativeFile, ThatIsAPipeOrADanglingLinkStaysOne) {
  const TempFolder folder;
  const fs::path pipe = folder.Path() / "pipe";
  ASSERT_EQ(::mkfifo(pipe.c_str(), 0600), 0);
  const Descriptor reader(::open(pipe.c_str(), O_RDONLY | O_NONBLOCK | O_CLOEXEC));
  ASSERT_TRUE(WriteNativeFile(pipe, "bytes"));
  char got[8] = {};
  EXPECT_EQ(::read(reader.Number(), got, sizeof got), 5);
  EXPECT_EQ(std::string(got), "bytes");
  EXPECT_TRUE(fs::is_fifo(pipe));
  fs::create_symlink("new.vcf", folder.Path() / "link.vcf");
  ASSERT_TRUE(WriteNativeFile(folder.Path() / "link.vcf", "x"));
  EXPECT_TRUE(fs::is_symlink(folder.Path() / "link.vcf"));
  EXPECT_EQ(folder.Get("new.vcf"), "x");
}

TEST(NativeFile, ThatCannotBeWrittenLeavesNothingBehind) {
  const TempFolder folder;
  fs::create_directory(folder.Path() / "taken");
  const auto overFolder = WriteNativeFile(folder.Path() / "taken", "x");
  ASSERT_FALSE(overFolder);
  EXPECT_EQ(overFolder.Why().message, (folder.Path() / "taken").string() + ": Is a directory");
  EXPECT_FALSE(WriteNativeFile(folder.Path() / "missing" / "out", "x"));
  EXPECT_EQ(FilesIn(folder.Path()), 1U);
}

TEST(NativeFile, IsReadUpToALimitAndOnlyIfRegular) {
  const TempFolder folder;
  folder.Put("file", "12345");
  const auto fits = ReadNativeFile(folder.Path() / "file", 5);
  ASSERT_TRUE(fits);
  EXPECT_EQ(*fits, "12345");
  EXPECT_FALSE(ReadNativeFile(folder.Path() / "file", 4));
  ASSERT_EQ(::mkfifo((folder.Path() / "pipe").c_str(), 0600), 0);
  EXPECT_FALSE(ReadNativeFile(folder.Path() / "pipe", 5));
  EXPECT_FALSE(ReadNativeFile(folder.Path(), 5));
}

TEST(ProfileLock, KeepsASecondOneAwayUntilItGoes) {
  const TempFolder folder;
  Profile profile;
  profile.folder = folder.Path();
  {
    const auto first = ProfileLock::Take(profile);
    ASSERT_TRUE(first) << first.Why().message;
    const auto second = ProfileLock::Take(profile);
    ASSERT_FALSE(second);
    EXPECT_NE(second.Why().message.find("another run"), std::string::npos);
  }
  EXPECT_TRUE(ProfileLock::Take(profile));
}

}  // namespace
}  // namespace pw
