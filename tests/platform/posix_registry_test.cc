#include "platform/posix/posix_registry.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <chrono>
#include <filesystem>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "tests/platform/temp_folder.h"

namespace pw {
namespace {

using namespace std::string_literals;

class PosixRegistryTest : public ::testing::Test {
 protected:
  PosixRegistry Store(RegistryMode mode = RegistryMode::kReadWrite) {
    return PosixRegistry(
        {file, mode, [this](const std::string& text) { warnings.push_back(text); }, lockWait});
  }
  void Put(std::string_view bytes) const { folder.Put("r.reg", bytes); }
  std::string Get() const { return folder.Get("r.reg"); }

  static void Write(Registry& store, const std::string& path, const std::string& name,
                    std::uint32_t number) {
    const auto key = store.Create(path);
    ASSERT_NE(key, nullptr);
    EXPECT_TRUE(key->Write(name, NumberValue(number)));
  }
  static std::optional<std::uint32_t> Read(Registry& store, const std::string& path,
                                           const std::string& name) {
    const auto key = store.Open(path, RegistryAccess::kRead);
    return key == nullptr ? std::nullopt : ReadNumber(*key, name);
  }

  // All files in the folder but the lock.
  std::vector<std::string> Files() const {
    std::vector<std::string> names;
    for (const auto& entry : std::filesystem::directory_iterator(folder.Path())) {
      if (entry.path().extension() != ".lock") names.push_back(entry.path().filename());
    }
    return names;
  }

  TempFolder folder;
  std::filesystem::path file = folder.Path() / "r.reg";
  std::chrono::milliseconds lockWait = SharedFileLock::kLongestWait;
  std::vector<std::string> warnings;
};

const std::string kOneValue = "REGEDIT4\n[HKLM\\K]\n\"x\"=dword:1\n";

TEST_F(PosixRegistryTest, AMissingFileIsMadeByTheFirstWrite) {
  auto store = Store();
  EXPECT_EQ(store.Error(), std::nullopt);
  EXPECT_EQ(Read(store, "K", "x"), std::nullopt);
  EXPECT_TRUE(Files().empty()) << "reading makes nothing";
  Write(store, "K", "x", 1);
  EXPECT_EQ(Get().substr(0, 4), "\xFF\xFEW\0"s);
  auto other = Store();
  EXPECT_EQ(Read(other, "k", "X"), 1U);
  EXPECT_EQ(Files(), std::vector<std::string>{"r.reg"});
}

TEST_F(PosixRegistryTest, ChangesAreInTheFileWhenAKeyIsClosedAndOnlyChanges) {
  Put(kOneValue);
  const auto before = StampOf(file);
  auto store = Store();
  Write(store, "k", "X", 1);
  store.Open("K", RegistryAccess::kReadWrite);
  EXPECT_EQ(StampOf(file), before);
  Write(store, "K", "x", 2);
  EXPECT_EQ(Get(), "REGEDIT4\n[HKLM\\K]\n\"x\"=dword:00000002\n");
  store.Create("New");
  EXPECT_EQ(Get(), "REGEDIT4\n[HKLM\\K]\n\"x\"=dword:00000002\n\n[HKEY_LOCAL_MACHINE\\New]\n");
}

TEST_F(PosixRegistryTest, TwoStoresSeeAndKeepEachOthersChanges) {
  Put(kOneValue);
  auto one = Store();
  auto two = Store();
  Write(one, "K", "x", 2);
  EXPECT_EQ(Read(two, "K", "x"), 2U);

  auto keyOfOne = one.Open("K", RegistryAccess::kReadWrite);
  auto keyOfTwo = two.Open("K", RegistryAccess::kReadWrite);
  EXPECT_TRUE(keyOfOne->Write("one", NumberValue(1)));
  EXPECT_TRUE(keyOfTwo->Write("two", NumberValue(2)));
  EXPECT_TRUE(keyOfTwo->Write("x", NumberValue(3)));
  EXPECT_TRUE(keyOfOne->Write("x", NumberValue(2))) << "as it is already, as far as this one knows";
  keyOfTwo.reset();
  EXPECT_EQ(keyOfOne->Read("two"), std::nullopt) << "nothing was opened since";
  keyOfOne.reset();
  for (PosixRegistry* const store : {&one, &two}) {
    EXPECT_EQ(Read(*store, "K", "one"), 1U);
    EXPECT_EQ(Read(*store, "K", "two"), 2U);
    EXPECT_EQ(Read(*store, "K", "x"), 2U);
  }
}

TEST_F(PosixRegistryTest, WhatIsNotYetInTheFileOutlivesItsReading) {
  Put(kOneValue);
  auto store = Store();
  const auto key = store.Create("New");
  EXPECT_TRUE(key->Write("y", NumberValue(5)));
  Put("REGEDIT4\n[HKLM\\Others]\n\"z\"=dword:6\n");
  EXPECT_EQ(Read(store, "Others", "z"), 6U);
  EXPECT_EQ(Read(store, "K", "x"), std::nullopt);
  EXPECT_EQ(key->Read("y"), NumberValue(5));
}

TEST_F(PosixRegistryTest, ProcessesThatWriteAtOnceLoseNothing) {
  constexpr std::uint32_t kProcesses = 4;
  constexpr std::uint32_t kValues = 10;
  std::vector<pid_t> children;
  for (std::uint32_t process = 0; process < kProcesses; ++process) {
    const pid_t child = fork();
    if (child == 0) {
      auto store = Store();
      for (std::uint32_t i = 0; i < kValues; ++i) {
        Write(store, "K" + std::to_string(process), std::to_string(i), i);
      }
      _exit(HasFailure() || !warnings.empty() ? 1 : 0);
    }
    children.push_back(child);
  }
  for (const pid_t child : children) {
    int status = -1;
    EXPECT_EQ(waitpid(child, &status, 0), child);
    EXPECT_EQ(status, 0);
  }
  auto store = Store();
  for (std::uint32_t process = 0; process < kProcesses; ++process) {
    for (std::uint32_t i = 0; i < kValues; ++i) {
      EXPECT_EQ(Read(store, "K" + std::to_string(process), std::to_string(i)), i);
    }
  }
  EXPECT_EQ(Files(), std::vector<std::string>{"r.reg"});
}

TEST_F(PosixRegistryTest, AReaderHasTheOldContentOrTheNewOne) {
  Put(kOneValue);
  const Descriptor reader(open(file.c_str(), O_RDONLY | O_CLOEXEC));
  auto store = Store();
  Write(store, "K", "x", 2);
  std::string bytes(100, '\0');
  const ssize_t got = read(reader.Number(), bytes.data(), bytes.size());
  EXPECT_EQ(bytes.substr(0, static_cast<std::size_t>(got)), kOneValue);
}

TEST_F(PosixRegistryTest, TheFileKeepsItsModeAndItsPlace) {
  Put(kOneValue);
  ASSERT_EQ(chmod(file.c_str(), 0640), 0);
  std::filesystem::rename(file, folder.Path() / "real.reg");
  std::filesystem::create_symlink("real.reg", file);
  auto store = Store();
  Write(store, "K", "x", 2);
  EXPECT_TRUE(std::filesystem::is_symlink(file));
  struct stat status {};
  ASSERT_EQ(stat(file.c_str(), &status), 0);
  EXPECT_EQ(status.st_mode & 07777U, 0640U);
}

TEST_F(PosixRegistryTest, AnOverlayKeepsChangesToItself) {
  Put(kOneValue);
  auto overlay = Store(RegistryMode::kOverlay);
  Write(overlay, "K", "x", 2);
  Write(overlay, "New", "y", 3);
  EXPECT_EQ(Get(), kOneValue);
  EXPECT_EQ(Files(), std::vector<std::string>{"r.reg"});
  auto store = Store();
  Write(store, "K", "z", 4);
  EXPECT_EQ(Read(overlay, "K", "x"), 2U);
  EXPECT_EQ(Read(overlay, "New", "y"), 3U);
  EXPECT_EQ(Read(overlay, "K", "z"), 4U);
}

TEST_F(PosixRegistryTest, WhereFileOrLockCantBeMadeNothingOpensForWriting) {
  Put(kOneValue);
  std::filesystem::create_directory(file.native() + ".lock");
  for (const std::filesystem::path& each : {folder.Path() / "none" / "r.reg", file}) {
    file = each;
    auto store = Store();
    EXPECT_EQ(store.Error(), std::nullopt);
    EXPECT_NE(store.Open("", RegistryAccess::kRead), nullptr);
    EXPECT_EQ(store.Open("", RegistryAccess::kReadWrite), nullptr);
    EXPECT_EQ(store.Create("K"), nullptr);
  }
}

TEST_F(PosixRegistryTest, AFileThatIsNoRegistryIsNamedAndNeverTouched) {
  for (const auto mode :
       {RegistryMode::kReadWrite, RegistryMode::kReadOnly, RegistryMode::kOverlay}) {
    Put("something else\n");
    auto store = Store(mode);
    ASSERT_NE(store.Error(), std::nullopt);
    EXPECT_EQ(store.Error()->find(file.string() + ": "), 0U);
    EXPECT_EQ(store.Open("", RegistryAccess::kRead), nullptr);
    EXPECT_EQ(store.Create("K"), nullptr);
    EXPECT_EQ(Get(), "something else\n");

    Put(kOneValue);
    EXPECT_EQ(Read(store, "K", "x"), 1U) << "as soon as it is mended";
    EXPECT_EQ(store.Error(), std::nullopt);
  }
}

TEST_F(PosixRegistryTest, WhatIsNoRegularFileIsAnErrorAndHoldsUpNobody) {
  ASSERT_EQ(mkfifo(file.c_str(), 0600), 0);
  EXPECT_NE(Store().Error(), std::nullopt);
  file = folder.Path();
  EXPECT_NE(Store().Error(), std::nullopt);
}

// As while somebody else writes it in place, has moved it aside, or holds the lock.
TEST_F(PosixRegistryTest, ChangesThatCantBeSavedAreToldAndTriedAgain) {
  lockWait = std::chrono::milliseconds(0);
  const struct {
    const char* what;
    std::string content;
    bool isThere, locked;
  } cases[] = {{"something else", "something else\n", true, false},
               {"empty", "", true, false},
               {"gone", "", false, false},
               {"locked", kOneValue, true, true}};
  for (const auto& c : cases) {
    SCOPED_TRACE(c.what);
    warnings.clear();
    Put(kOneValue);
    auto store = Store();
    auto key = store.Open("K", RegistryAccess::kReadWrite);
    EXPECT_TRUE(key->Write("y", NumberValue(2)));
    Put(c.content);
    if (!c.isThere) std::filesystem::remove(file);
    auto lock = c.locked ? std::make_unique<SharedFileLock>(file) : nullptr;
    key.reset();
    ASSERT_EQ(warnings.size(), 1U);
    ASSERT_NE(store.SaveFailure(), std::nullopt);
    EXPECT_EQ(warnings[0].find(*store.SaveFailure()), 0U);
    EXPECT_EQ(warnings[0].find(file.string() + ": "), 0U);
    EXPECT_EQ(std::filesystem::exists(file), c.isThere);
    EXPECT_EQ(Get(), c.content);
    EXPECT_EQ(store.Error().has_value(), !c.locked);
    EXPECT_EQ(store.Create("K") == nullptr, !c.locked);

    lock.reset();
    Put(kOneValue);
    store.Open("K", RegistryAccess::kReadWrite);
    EXPECT_EQ(store.SaveFailure(), std::nullopt);
    EXPECT_EQ(Get(), kOneValue + "\"y\"=dword:00000002\n");
  }
}

TEST_F(PosixRegistryTest, WhatCouldntBeReadForAMomentIsReadAgain) {
  if (geteuid() != 0) GTEST_SKIP() << "only root can become somebody else";
  Put(kOneValue);
  ASSERT_EQ(chmod(folder.Path().c_str(), 0755), 0);
  auto store = Store();
  Put("REGEDIT4\n[HKLM\\K]\n\"x\"=dword:22\n");
  ASSERT_EQ(chmod(file.c_str(), 0600), 0);
  ASSERT_EQ(seteuid(1), 0);
  const auto read = Read(store, "K", "x");
  ASSERT_EQ(seteuid(0), 0);
  EXPECT_EQ(read, std::nullopt);
  EXPECT_NE(store.Error(), std::nullopt);
  EXPECT_EQ(Read(store, "K", "x"), 0x22U);
  EXPECT_EQ(store.Error(), std::nullopt);
}

TEST_F(PosixRegistryTest, BadLinesAreToldOnceWithFileAndLine) {
  Put(kOneValue + "junk\n");
  auto store = Store();
  Write(store, "K", "x", 2);
  Put(kOneValue + "junk\n\"x\"=\n");
  EXPECT_EQ(Read(store, "K", "x"), 1U);
  ASSERT_EQ(warnings.size(), 2U);
  EXPECT_EQ(warnings[0].find(file.string() + ":4: "), 0U) << warnings[0];
  EXPECT_EQ(warnings[1].find(file.string() + ":5: "), 0U) << warnings[1];
}

}  // namespace
}  // namespace pw
