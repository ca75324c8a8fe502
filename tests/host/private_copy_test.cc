#include "host/private_copy.h"

#include <fcntl.h>
#include <sys/stat.h>

#include <map>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "tests/platform/temp_folder.h"

namespace pw {
namespace {

namespace fs = std::filesystem;

// Seconds and nanoseconds of the last access and the last write.
std::vector<long> TimesOf(const fs::path& path) {
  struct stat status {};
  EXPECT_EQ(::stat(path.c_str(), &status), 0) << path;
  return {status.st_atim.tv_sec, status.st_atim.tv_nsec, status.st_mtim.tv_sec,
          status.st_mtim.tv_nsec};
}

// Long ago, so that a read would leave its trace.
void Age(const fs::path& path) {
  const timespec times[2] = {{100'000'000, 5}, {200'000'000, 123'456'789}};
  ASSERT_EQ(::utimensat(AT_FDCWD, path.c_str(), times, 0), 0);
}

TEST(PrivateCopy, HoldsTheFilesAndTheirTimesAndLeavesTheOriginalAlone) {
  const TempFolder original;
  original.Put("Friends.WMCard", std::string(100'000, 'x') + '\0' + "end");
  original.Put("EMPTY.DAT", "");
  original.Put("Sub/Inner.txt", "not copied");
  fs::create_symlink("Friends.WMCard", original.Path() / "Link.WMCard");
  ASSERT_EQ(::mkfifo((original.Path() / "pipe").c_str(), 0600), 0);
  const std::vector<fs::path> watched = {original.Path() / "Friends.WMCard",
                                         original.Path() / "EMPTY.DAT", original.Path()};
  for (const fs::path& path : watched) Age(path);
  std::map<fs::path, std::vector<long>> before;
  for (const fs::path& path : watched) before[path] = TimesOf(path);

  fs::path folder;
  {
    const auto copy = PrivateCopy::Make(original.Path());
    ASSERT_TRUE(copy) << copy.Why().message;
    folder = (*copy)->Folder();
    EXPECT_EQ(fs::status(folder).permissions(), fs::perms::owner_all);
    std::map<std::string, std::uintmax_t> sizes;
    for (const auto& entry : fs::directory_iterator(folder)) {
      sizes[entry.path().filename().string()] = entry.file_size();
    }
    const std::map<std::string, std::uintmax_t> expected = {
        {"EMPTY.DAT", 0}, {"Friends.WMCard", 100'004}, {"Link.WMCard", 100'004}};
    EXPECT_EQ(sizes, expected);
    EXPECT_EQ(TimesOf(folder / "Friends.WMCard"), before[watched[0]]);
    // Changing the copy is nobody's business.
    fs::resize_file(folder / "Friends.WMCard", 1);
    fs::remove(folder / "EMPTY.DAT");
  }
  EXPECT_FALSE(fs::exists(folder));
  for (const fs::path& path : watched) EXPECT_EQ(TimesOf(path), before[path]) << path;
  EXPECT_EQ(original.Get("Friends.WMCard").size(), 100'004U);
}

TEST(PrivateCopy, OfAFolderThatIsNotThereNamesIt) {
  const TempFolder folder;
  folder.Put("file", "");
  for (const char* name : {"missing", "file"}) {
    const auto copy = PrivateCopy::Make(folder.Path() / name);
    ASSERT_FALSE(copy);
    EXPECT_EQ(copy.Why().message.rfind((folder.Path() / name).string() + ": ", 0), 0U);
  }
}

}  // namespace
}  // namespace pw
