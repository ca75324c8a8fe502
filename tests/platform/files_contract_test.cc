#include <fcntl.h>
#include <sys/stat.h>

#include <memory>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "platform/files.h"
#include "platform/posix/posix_files.h"
#include "platform/testing/fake_clock.h"
#include "platform/testing/memory_files.h"
#include "tests/platform/implementations.h"
#include "tests/platform/temp_folder.h"
#include "tests/platform/whole_file.h"

namespace pw {
namespace {

using namespace std::string_literals;

// An implementation with an empty drive C, and what the interface can't do.
class Implementation {
 public:
  virtual ~Implementation() = default;
  virtual Files& Get() = 0;
  virtual void PutFolder(const std::string& path) = 0;
  virtual void MakeOld(const std::string& path) = 0;
};

class InMemory : public Implementation {
 public:
  InMemory() { files.PutFolder("C:\\"); }
  Files& Get() override { return files; }
  void PutFolder(const std::string& path) override { files.PutFolder(path); }
  void MakeOld(const std::string& path) override { files.SetLastWrite(path, 1'000'000'000); }

 private:
  FakeClock clock;
  MemoryFiles files{clock};
};

class OnDisk : public Implementation {
 public:
  Files& Get() override { return files; }
  void PutFolder(const std::string& path) override {
    std::filesystem::create_directory(table.Translate(path)->path);
  }
  void MakeOld(const std::string& path) override {
    const timespec times[2] = {{1, 0}, {1, 0}};
    ASSERT_EQ(utimensat(AT_FDCWD, table.Translate(path)->path.c_str(), times, 0), 0);
  }

 private:
  TempFolder folder;
  PathTable table{{{"C:", folder.Path()}}, folder.Path() / "none"};
  PosixFiles files{table, "C:\\module"};
};

class FilesContract : public ContractTest<Implementation> {
 protected:
  FilesContract() { implementation->PutFolder("C:\\Data"); }

  std::unique_ptr<File> Open(const std::string& path, OpenMode mode,
                             Sharing sharing = Sharing::kReadWrite) {
    return files.Open(path, mode, sharing);
  }
  void Put(const std::string& path, const std::string& bytes) {
    const auto file = Open(path, OpenMode::kCreateAlways);
    ASSERT_NE(file, nullptr) << path;
    ASSERT_TRUE(file->Write(bytes)) << path;
  }
  std::string Get(const std::string& path) {
    return ReadWholeFile(files, path).value_or("(nothing)");
  }
  std::vector<std::string> Find(const std::string& pattern) {
    std::vector<std::string> names;
    for (const FoundFile& found : files.Find(pattern)) {
      names.push_back(found.isFolder ? found.name + "\\" : found.name);
    }
    return names;
  }

  Files& files = implementation->Get();
};

constexpr OpenMode kModes[] = {OpenMode::kRead, OpenMode::kReadWriteExisting, OpenMode::kOpenAlways,
                               OpenMode::kCreateAlways};

TEST_P(FilesContract, ModesMakeEmptyAndWriteWhatTheyShould) {
  const struct {
    OpenMode mode;
    bool makes, empties, writes;
  } cases[] = {
      {OpenMode::kRead, false, false, false},
      {OpenMode::kReadWriteExisting, false, false, true},
      {OpenMode::kOpenAlways, true, false, true},
      {OpenMode::kCreateAlways, true, true, true},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(static_cast<int>(c.mode));
    EXPECT_EQ(Open("C:\\Data\\new", c.mode) != nullptr, c.makes);
    EXPECT_EQ(Get("C:\\Data\\new"), c.makes ? "" : "(nothing)");
    files.Delete("C:\\Data\\new");

    Put("C:\\Data\\old", "12345");
    const auto file = Open("C:\\Data\\old", c.mode);
    ASSERT_NE(file, nullptr);
    EXPECT_EQ(file->Size(), c.empties ? 0U : 5U);
    EXPECT_EQ(file->Read(9), c.empties ? "" : "12345");
    ASSERT_TRUE(file->Seek(0));
    EXPECT_EQ(file->Write("ab"), c.writes);
    EXPECT_EQ(file->Seek(1) && file->Truncate(), c.writes);
    EXPECT_EQ(Get("C:\\Data\\old"), c.writes ? "a" : "12345");
  }
}

TEST_P(FilesContract, WhatIsNoFileIsNotOpened) {
  Put("C:\\Data\\file", "1");
  for (const std::string& path :
       {"C:\\Data"s, "C:\\Data\\"s, "C:\\"s, "C:"s, "."s, ""s, "C:\\None\\file"s,
        "C:\\Data\\file\\"s, "C:\\Data\\file\\x"s, "C:\\Data\\new\\"s, "C:\\Data\\fi\0le"s,
        "Q:\\file"s, "\\\\server\\share\\file"s}) {
    for (const OpenMode mode : kModes) EXPECT_EQ(Open(path, mode), nullptr) << path;
  }
  EXPECT_EQ(Find("C:\\Data\\*"), std::vector<std::string>{"file"});
}

TEST_P(FilesContract, OnePositionServesReadingAndWriting) {
  Put("C:\\f", "0123456789");
  const auto file = Open("C:\\f", OpenMode::kReadWriteExisting);
  ASSERT_NE(file, nullptr);
  EXPECT_EQ(file->Read(3), "012");
  EXPECT_TRUE(file->Write("ab\0"s));
  EXPECT_EQ(file->Read(2), "67");
  EXPECT_EQ(file->Read(SIZE_MAX), "89");
  EXPECT_EQ(file->Read(1), "");
  EXPECT_TRUE(file->Write("A"));
  EXPECT_EQ(Get("C:\\f"), "012ab\0006789A"s);

  EXPECT_TRUE(file->Seek(4));
  EXPECT_FALSE(file->Seek(UINT64_MAX));
  EXPECT_EQ(file->Read(1), "b");
  EXPECT_TRUE(file->Truncate());
  EXPECT_EQ(file->Read(1), "");
  EXPECT_TRUE(file->Write("c"));
  EXPECT_EQ(Get("C:\\f"), "012abc");
}

TEST_P(FilesContract, BeyondTheEndLieZeros) {
  Put("C:\\f", "1");
  const auto file = Open("C:\\f", OpenMode::kReadWriteExisting);
  ASSERT_NE(file, nullptr);
  EXPECT_TRUE(file->Seek(3));
  EXPECT_EQ(file->Read(1), "");
  EXPECT_EQ(file->Size(), 1U);
  EXPECT_TRUE(file->Write("2"));
  EXPECT_EQ(Get("C:\\f"), "1\0\0002"s);
  EXPECT_TRUE(file->Seek(6) && file->Truncate());
  EXPECT_EQ(Get("C:\\f"), "1\0\0002\0\0"s);
  EXPECT_TRUE(file->Seek(INT64_MAX));
  EXPECT_EQ(file->Read(1), "");
  EXPECT_FALSE(file->Write("3"));
  EXPECT_EQ(file->Size(), 6U);
}

TEST_P(FilesContract, OpenFilesOfOneNameSeeEachOther) {
  const auto first = Open("C:\\f", OpenMode::kOpenAlways);
  const auto second = Open("c:/F", OpenMode::kRead);
  ASSERT_TRUE(first != nullptr && second != nullptr);
  EXPECT_TRUE(first->Write("12"));
  EXPECT_EQ(second->Read(9), "12");
}

TEST_P(FilesContract, SharingHoldsBothWays) {
  constexpr OpenMode kR = OpenMode::kRead;
  constexpr OpenMode kRW = OpenMode::kReadWriteExisting;
  const struct {
    OpenMode mode;
    Sharing sharing;
    OpenMode otherMode;
    Sharing otherSharing;
    bool opens;
  } cases[] = {
      {kR, Sharing::kReadWrite, kR, Sharing::kReadWrite, true},
      {kRW, Sharing::kReadWrite, kRW, Sharing::kReadWrite, true},
      {kR, Sharing::kRead, kR, Sharing::kRead, true},
      {kR, Sharing::kNone, kR, Sharing::kReadWrite, false},
      {kR, Sharing::kReadWrite, kR, Sharing::kNone, false},
      {kR, Sharing::kRead, kRW, Sharing::kReadWrite, false},
      {kRW, Sharing::kReadWrite, kR, Sharing::kRead, false},
      {kRW, Sharing::kRead, kR, Sharing::kReadWrite, true},
      {kRW, Sharing::kRead, kR, Sharing::kRead, false},
      {kR, Sharing::kWrite, kR, Sharing::kReadWrite, false},
      {kR, Sharing::kRead, OpenMode::kCreateAlways, Sharing::kReadWrite, false},
      {kRW, Sharing::kNone, OpenMode::kOpenAlways, Sharing::kReadWrite, false},
  };
  Put("C:\\f", "content");
  for (const auto& c : cases) {
    SCOPED_TRACE(&c - cases);
    auto file = Open("C:\\f", c.mode, c.sharing);
    ASSERT_NE(file, nullptr);  // so nothing is left of those before
    EXPECT_EQ(Open("C:\\f", c.otherMode, c.otherSharing) != nullptr, c.opens);
    EXPECT_NE(Open("C:\\other", OpenMode::kOpenAlways, Sharing::kNone), nullptr);
    // One that was refused leaves nothing behind either.
    EXPECT_EQ(Open("C:\\f", kR, Sharing::kReadWrite) != nullptr,
              c.sharing != Sharing::kNone && c.sharing != Sharing::kWrite);
  }
  EXPECT_EQ(Get("C:\\f"), "content");
}

TEST_P(FilesContract, NamesIgnoreCaseAndKeepIt) {
  Put("C:\\DATA\\My \xC4pfel.Txt", "1");
  Put("c:/data/MY \xE4PFEL.TXT", "2");
  EXPECT_EQ(Find("C:\\data\\*"), std::vector<std::string>{"My \xC4pfel.Txt"});
  EXPECT_EQ(Get("C:\\.\\None\\..\\Data\\my \xC4pfel.txt"), "2");
  EXPECT_FALSE(files.Exists("C:\\Data\\my \xC4pfel.txt."));
}

TEST_P(FilesContract, ExistsAndMayBeChanged) {
  Put("C:\\Data\\file", "1");
  for (const char* path : {"C:\\Data\\FILE", "C:\\Data", "C:\\Data\\", "C:\\", "C:"}) {
    EXPECT_TRUE(files.Exists(path)) << path;
    EXPECT_TRUE(files.IsReadableAndWritable(path)) << path;
  }
  for (const char* path : {"C:\\Data\\none", "C:\\None\\x", "C:\\Data\\file\\", "", "Q:\\"}) {
    EXPECT_FALSE(files.Exists(path)) << path;
    EXPECT_FALSE(files.IsReadableAndWritable(path)) << path;
  }
}

TEST_P(FilesContract, DeletesFilesThatNobodyHasOpen) {
  Put("C:\\Data\\file", "1");
  EXPECT_FALSE(files.Delete("C:\\Data"));
  EXPECT_FALSE(files.Delete("C:\\Data\\"));
  EXPECT_FALSE(files.Delete("C:\\Data\\file\\"));
  EXPECT_FALSE(files.Delete("C:\\Data\\none"));
  {
    const auto open = Open("C:\\Data\\file", OpenMode::kRead);
    EXPECT_FALSE(files.Delete("C:\\Data\\file"));
  }
  EXPECT_TRUE(files.Delete("c:\\data\\FILE"));
  EXPECT_FALSE(files.Exists("C:\\Data\\file"));
  EXPECT_FALSE(files.Delete("C:\\Data\\file"));
}

TEST_P(FilesContract, CopiesWithoutOverwriting) {
  const std::string large = std::string(200'000, 'x') + "\0end"s;
  Put("C:\\Data\\from", large);
  Put("C:\\Data\\taken", "1");
  EXPECT_TRUE(files.CopyWithoutOverwriting("C:\\Data\\FROM", "C:\\To"));
  EXPECT_EQ(Get("C:\\To"), large);
  EXPECT_EQ(Get("C:\\Data\\from"), large);
  EXPECT_EQ(Find("C:\\*"), (std::vector<std::string>{"Data\\", "To"}));

  const auto fails = [&](const char* from, const char* to) {
    return !files.CopyWithoutOverwriting(from, to);
  };
  EXPECT_TRUE(fails("C:\\Data\\from", "C:\\Data\\TAKEN"));
  EXPECT_TRUE(fails("C:\\Data\\from", "C:\\Data"));
  EXPECT_TRUE(fails("C:\\Data\\from", "C:\\Data\\from"));
  EXPECT_TRUE(fails("C:\\Data\\from", "C:\\None\\to"));
  EXPECT_TRUE(fails("C:\\Data\\none", "C:\\new"));
  EXPECT_TRUE(fails("C:\\Data", "C:\\new"));
  const auto open = Open("C:\\Data\\from", OpenMode::kRead, Sharing::kNone);
  EXPECT_TRUE(fails("C:\\Data\\from", "C:\\new"));
  EXPECT_FALSE(files.Exists("C:\\new"));
  EXPECT_EQ(Get("C:\\Data\\taken"), "1");
}

TEST_P(FilesContract, FindsInTheOrderOfNames) {
  implementation->PutFolder("C:\\Data\\folder.WMX");
  for (const char* name : {"b.wmx", "A.wmx", "c.WMX", "\xE4.wmx", "\xC5.wmx", "a1.wmx", "x.wmy"}) {
    Put("C:\\Data\\"s + name, "");
  }
  EXPECT_EQ(Find("c:/DATA/*.Wmx"),
            (std::vector<std::string>{"A.wmx", "a1.wmx", "b.wmx", "c.WMX", "folder.WMX\\",
                                      "\xE4.wmx", "\xC5.wmx"}));
  EXPECT_EQ(Find("C:Data\\?.wmx").size(), 5U);
  EXPECT_EQ(Find("C:\\Data\\X.WMY"), std::vector<std::string>{"x.wmy"});
  EXPECT_EQ(Find("C:*"), std::vector<std::string>{"Data\\"});
  for (const char* pattern :
       {"C:\\Data\\", "C:\\None\\*", "C:\\Data\\x.wmy\\*", "Q:\\*", "", "*"}) {
    EXPECT_TRUE(Find(pattern).empty()) << pattern;
  }
}

TEST_P(FilesContract, TellsTheLastWrite) {
  Put("C:\\f", "1");
  const auto age = [&] { return Open("C:\\f", OpenMode::kRead)->LastWriteTime(); };
  implementation->MakeOld("C:\\f");
  EXPECT_EQ(age(), 1'000'000'000);
  EXPECT_EQ(Get("C:\\f"), "1");
  EXPECT_EQ(age(), 1'000'000'000);
  Open("C:\\f", OpenMode::kReadWriteExisting)->Write("2");
  EXPECT_GT(age(), 1'000'000'000);
  implementation->MakeOld("C:\\f");
  Open("C:\\f", OpenMode::kCreateAlways);
  EXPECT_GT(age(), 1'000'000'000);
}

INSTANTIATE_TEST_SUITE_P(InMemoryAndOnDisk, FilesContract,
                         testing::Values(Make<Implementation, InMemory>,
                                         Make<Implementation, OnDisk>));

TEST(MatchesPattern, StarAndQuestionMark) {
  const struct {
    const char *name, *pattern;
    bool matches;
  } cases[] = {
      {"", "", true},
      {"", "*", true},
      {"", "?", false},
      {"a", "", false},
      {"CARDS.WMCard", "*.wmcard", true},
      {"CARDS.WMCard", "*.WMCar", false},
      {"CARDS.WMCard", "*", true},
      {"EVEN.WMW", "*EVEN.WMW", true},
      {"EVEN", "*.*", false},
      {"\xC4.x", "\xE4.?", true},
      {"abcabd", "*abd", true},
      {"abcabd", "a*b?", true},
      {"aab", "*a*a*a*b", false},
      {"a*b", "a?b", true},
      {"ab", "a?b", false},
      {"ab", "a**b*", true},
  };
  for (const auto& c : cases) {
    EXPECT_EQ(MatchesPattern(c.name, c.pattern), c.matches) << c.name << " by " << c.pattern;
  }
}

}  // namespace
}  // namespace pw
