#include "platform/testing/memory_files.h"

#include <string>

#include <gtest/gtest.h>

#include "platform/testing/fake_clock.h"

namespace pw {
namespace {

class MemoryFilesTest : public testing::Test {
 protected:
  std::unique_ptr<File> Open(const std::string& path, OpenMode mode) {
    return files.Open(path, mode, Sharing::kReadWrite);
  }

  FakeClock clock;
  MemoryFiles files{clock};
};

TEST_F(MemoryFilesTest, PutMakesFoldersAndReplaces) {
  files.Put("C:\\Data\\f", "1");
  files.Put("c:\\DATA\\F", "2");
  EXPECT_TRUE(files.Exists("C:\\Data"));
  EXPECT_EQ(files.Get("C:\\Data\\f"), "2");
  EXPECT_EQ(files.Get("C:\\Data"), std::nullopt);
  EXPECT_EQ(files.Get("C:\\Data\\none"), std::nullopt);
  EXPECT_EQ(files.Find("C:\\Data\\*").size(), 1U);
  EXPECT_EQ(files.Opens(), 0U);
}

TEST_F(MemoryFilesTest, WritesFailAfterSoManyBytes) {
  files.Put("C:\\f", "abcdef");
  files.FailWritesAfter(3);
  const auto file = Open("C:\\f", OpenMode::kReadWriteExisting);
  EXPECT_TRUE(file->Write("12"));
  EXPECT_FALSE(file->Write("345"));
  EXPECT_FALSE(file->Write("6"));
  EXPECT_EQ(files.Get("C:\\f"), "123def");
  EXPECT_FALSE(files.CopyWithoutOverwriting("C:\\f", "C:\\copy"));
  EXPECT_FALSE(files.Exists("C:\\copy"));
  files.StopFailing();
  EXPECT_TRUE(file->Write("4"));
  EXPECT_EQ(files.Get("C:\\f"), "1234ef");
  EXPECT_EQ(files.Opens(), 2U);
  EXPECT_EQ(files.Writes(), 5U);
}

TEST_F(MemoryFilesTest, OpeningAndCuttingOffFail) {
  files.Put("C:\\f", "1");
  files.FailOpen("c:/F");
  EXPECT_EQ(Open("C:\\f", OpenMode::kCreateAlways), nullptr);
  EXPECT_FALSE(files.CopyWithoutOverwriting("C:\\f", "C:\\g"));
  EXPECT_TRUE(files.Exists("C:\\f"));
  files.StopFailing();
  files.FailTruncate();
  EXPECT_FALSE(Open("C:\\f", OpenMode::kReadWriteExisting)->Truncate());
  EXPECT_EQ(Open("C:\\f", OpenMode::kCreateAlways), nullptr);
  EXPECT_EQ(files.Get("C:\\f"), "1");
}

TEST_F(MemoryFilesTest, AReadOnlyFileStaysAsItIs) {
  files.Put("C:\\f", "1");
  files.SetReadOnly("C:\\f", true);
  EXPECT_NE(Open("C:\\f", OpenMode::kRead), nullptr);
  EXPECT_EQ(Open("C:\\f", OpenMode::kReadWriteExisting), nullptr);
  EXPECT_EQ(Open("C:\\f", OpenMode::kCreateAlways), nullptr);
  EXPECT_FALSE(files.IsReadableAndWritable("C:\\f"));
  EXPECT_FALSE(files.Delete("C:\\f"));
  EXPECT_TRUE(files.CopyWithoutOverwriting("C:\\f", "C:\\g"));
  EXPECT_FALSE(files.IsReadableAndWritable("C:\\g"));
}

TEST_F(MemoryFilesTest, LastWritesAreTheClocks) {
  files.Put("C:\\f", "1");
  clock.Advance(2);
  const auto file = Open("C:\\f", OpenMode::kReadWriteExisting);
  const auto before = file->LastWriteTime();
  ASSERT_TRUE(file->Write("2"));
  EXPECT_EQ(*file->LastWriteTime() - *before, 2'000'000'000);
}

}  // namespace
}  // namespace pw
