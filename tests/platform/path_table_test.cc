#include "platform/posix/path_table.h"

#include <filesystem>
#include <optional>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "tests/platform/temp_folder.h"

namespace pw {
namespace {

using namespace std::string_literals;

// Where paths of these starts would lie if nothing below them is there.
TEST(PathTable, PicksThePlaceAndTheNamesBelowIt) {
  const PathTable table(
      {
          {"C:", "/drive"},
          {"d:\\", "/disk/", true},
          {"C:\\Data", "/copy", true},
          {"C:\\Data\\Old", "/old"},
          {"\\Share", "/share"},
          {"E:", "/first"},
          {"e:/", "/second"},
          {"", "/never"},
          {"F:", ""},
      },
      "/here");
  const struct {
    std::string path;
    const char* native;  // null: none
    bool readOnly;
  } cases[] = {
      {"C:\\a\\b.x", "/drive/a/b.x", false},
      {"c:/a/b.x", "/drive/a/b.x", false},
      {"C:a\\b.x", "/drive/a/b.x", false},
      {"C:", "/drive/", false},
      {"C:\\", "/drive/", false},
      {"C:\\\\a\\.\\b.x", "/drive/a/b.x", false},
      {"C:\\a\\", "/drive/a/", false},
      {"D:\\a", "/disk/a", true},
      // The longest prefix, by whole names, in any case.
      {"C:\\data\\a", "/copy/a", true},
      {"C:\\DATA", "/copy/", true},
      {"C:\\Data\\Old\\a", "/old/a", false},
      {"C:\\Database\\a", "/drive/Database/a", false},
      {"C:\\x\\..\\Data\\a", "/copy/a", true},
      {"E:\\a", "/second/a", false},
      // ".." goes no further than the start.
      {"C:\\a\\..\\b", "/drive/b", false},
      {"C:\\..\\..\\b", "/drive/b", false},
      {"C:\\Data\\..\\b", "/drive/b", false},
      {"..\\..\\b", "/here/b", false},
      {"/../b", "/b", false},
      {"...", "/here/...", false},
      // Without a drive.
      {"a\\b", "/here/a/b", false},
      {".", "/here/", false},
      {"/a/b", "/a/b", false},
      {"\\a\\b", "/a/b", false},
      {"\\share\\b", "/share/b", false},
      {"/", "/", false},
      {"1:a", "/here/1:a", false},
      // A mount of nothing is no way to the root.
      {"F:\\etc", "./etc", false},
      // No path at all.
      {"X:\\a", nullptr, false},
      {"", nullptr, false},
      {"\\\\server\\share\\a", nullptr, false},
      {"//server/a", nullptr, false},
      {"C:\\a\0.x"s, nullptr, false},
      // Text of the code page, the bytes without a meaning included.
      {"C:\\\xC4\x80\x81", "/drive/\xC3\x84\xE2\x82\xAC\xC2\x81", false},
  };
  for (const auto& c : cases) {
    const auto native = table.Translate(c.path);
    ASSERT_EQ(native.has_value(), c.native != nullptr) << c.path;
    if (!native) continue;
    EXPECT_EQ(native->path, c.native) << c.path;
    EXPECT_EQ(native->readOnly, c.readOnly) << c.path;
  }
}

class PathTableOnDisk : public testing::Test {
 protected:
  // The path below the drive's folder that a path on the drive leads to.
  std::string Find(const std::string& path) const {
    const auto native = PathTable({{"C:", folder.Path()}}, "/").Translate("C:\\" + path);
    return native ? native->path.substr(folder.Path().native().size() + 1) : "none";
  }

  TempFolder folder;
};

TEST_F(PathTableOnDisk, FindsNamesInAnyCase) {
  folder.Put("Data/Deep/FILE.Ext", "");
  folder.Put("\xC3\x84pfel/\xC5\x92.txt", "");
  EXPECT_EQ(Find("Data\\Deep\\FILE.Ext"), "Data/Deep/FILE.Ext");
  EXPECT_EQ(Find("dATA\\dEEP\\file.eXT"), "Data/Deep/FILE.Ext");
  EXPECT_EQ(Find("data\\deep\\"), "Data/Deep/");
  EXPECT_EQ(Find("\xE4PFEL\\\x9C.TXT"), "\xC3\x84pfel/\xC5\x92.txt");
  EXPECT_EQ(Find("data\\x\\..\\deep"), "Data/Deep");
}

TEST_F(PathTableOnDisk, KeepsTheSpellingFromTheFirstMissingNameOn) {
  folder.Put("Data/file", "");
  EXPECT_EQ(Find("DATA\\New.Txt"), "Data/New.Txt");
  EXPECT_EQ(Find("DATA\\None\\DATA\\FILE"), "Data/None/DATA/FILE");
  EXPECT_EQ(Find("DATA\\FILE\\x"), "Data/file/x");
  EXPECT_EQ(Find(std::string(5000, 'n')), std::string(5000, 'n'));
  folder.Put("Data/new.txt", "");  // nothing was remembered
  EXPECT_EQ(Find("DATA\\New.Txt"), "Data/new.txt");
}

TEST_F(PathTableOnDisk, PrefersTheExactSpellingThenTheOrderOfBytes) {
  for (const char* name : {"name", "Name", "NAMe"}) folder.Put(name, "");
  EXPECT_EQ(Find("name"), "name");
  EXPECT_EQ(Find("Name"), "Name");
  EXPECT_EQ(Find("NAME"), "NAMe");
  std::filesystem::remove(folder.Path() / "NAMe");
  EXPECT_EQ(Find("NAME"), "Name");
}

// On disk stand names that only look like those asked for.
TEST_F(PathTableOnDisk, NeverMeetsNamesThatTheOrganiserCannotHave) {
  folder.Put("\xE4.txt", "");      // not UTF-8
  folder.Put("\xCE\xB1.txt", "");  // not in the code page
  folder.Put("Data\\file", "");    // one name
  folder.Put("C:x", "");
  EXPECT_EQ(Find("\xC4.TXT"), "\xC3\x84.TXT");
  EXPECT_EQ(Find("?.txt"), "?.txt");
  EXPECT_EQ(Find("DATA\\FILE"), "DATA/FILE");
  EXPECT_EQ(Find("Data ."), "Data .");
  EXPECT_EQ(OrganiserName("\xCE\xB1"), std::nullopt);
  EXPECT_EQ(OrganiserName("\xE4"), std::nullopt);
  EXPECT_EQ(OrganiserName("a\\b"), std::nullopt);
  EXPECT_EQ(OrganiserName("\xC3\xA4"), "\xE4");
}

}  // namespace
}  // namespace pw
