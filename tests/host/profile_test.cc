#include "host/profile.h"

#include <map>
#include <string>

#include <gtest/gtest.h>

#include "tests/platform/temp_folder.h"

namespace pw {
namespace {

TEST(Profile, ReadsWhatAPersonWrites) {
  const auto profile = ParseProfile(
      "codepage = 1252\n"
      "module = \"../lib/other.so\"\n"
      "[drives]\n"
      "C = \"c\"\n"
      "'D:' = '/media/disk'\n"
      "'E:\\M\xC3\xBCller' = '.'\n"
      "[config]\n"
      "2 = 'C:\\Data'\n"
      "5 = ''\n"
      "4000 = \"\xE2\x82\xAC\"\n",
      "/home/ann/profile");
  ASSERT_TRUE(profile) << profile.Why().message;
  EXPECT_EQ(*profile->module, "/home/ann/lib/other.so");
  std::map<std::string, std::filesystem::path> drives;
  for (const ProfileDrive& drive : profile->drives) drives[drive.prefix] = drive.folder;
  EXPECT_EQ(drives["C:"], "/home/ann/profile/c");
  EXPECT_EQ(drives["D:"], "/media/disk");
  EXPECT_EQ(drives["E:\\M\xFCller"], "/home/ann/profile/");
  EXPECT_EQ(profile->DataFolder(), "C:\\Data");
  EXPECT_EQ(profile->config.at(5), "");
  EXPECT_EQ(profile->config.at(4000), "\x80");
  EXPECT_EQ(profile->RegistryFile(), "/home/ann/profile/registry.reg");
}

TEST(Profile, NamesTheLineThatIsWrong) {
  const struct {
    const char* text;
    const char* where;
  } cases[] = {
      {"codepage = 437\n", ":1: codepage must be 1252"},
      {"codepage = '1252'\n", ":1: codepage must be 1252"},
      {"\nmodul = 'x'\n", ":2: unknown entry 'modul'"},
      {"module = 3\n", ":1: module must be"},
      {"drives = 'C'\n", ":1: drives must be a table"},
      {"[drives]\nC = 1\n", ":2: drives.C must be a text"},
      {"[drives]\nCD = 'x'\n", ":2: 'CD' is neither"},
      {"[drives]\n\n'C:x' = 'x'\n", ":3: 'C:x' is neither"},
      {"[drives]\n'C:\\\xE4\xB8\x80' = 'x'\n", ":2: 'C:\\\xE4\xB8\x80' is neither"},
      {"[drives]\nC = ''\n", ":2: the folder of drive C is empty"},
      {"[drives]\nC = 'x'\nc = 'y'\n", ":3: 'c' is there twice"},
      {"[config]\n02 = 'x'\n2 = 'y'\n", ":3: entry 2 is there twice"},
      {"[config]\nx = ''\n", ":2: 'x' is not the number"},
      {"[config]\n2147483648 = ''\n", ":2: '2147483648' is not the number"},
      {"[config]\n2 = 'C:\\\xE4\xB8\x80'\n", ":2: entry 2 has characters outside"},
      {"[config]\n2 = 'open\n", ":2: "},
      {"codepage = 1252\ncodepage = 1252\n", ":2: "},
      {"module = \"\xFF\"\n", ":1: "},
  };
  for (const auto& each : cases) {
    const auto profile = ParseProfile(each.text, "/p");
    ASSERT_FALSE(profile) << each.text;
    const std::string& message = profile.Why().message;
    EXPECT_EQ(message.rfind("/p/profile.toml" + std::string(each.where), 0), 0U) << message;
    EXPECT_EQ(message.find('\n'), std::string::npos) << message;
  }
}

TEST(Profile, IsWrittenSoThatItReadsTheSame) {
  Profile profile;
  profile.folder = "/home/ann/profile";
  profile.module = "/opt/it's/wmplugin.so";
  profile.drives = {{"C:", "/home/ann/profile/c"}, {"C:\\M\xFCll \"x\"", "/home/ann/other\n"}};
  profile.config = {{2, "C:\\Data"}, {5, ""}, {4000, "a'b\\\"\x01\x80"}};
  const std::string text = RenderProfile(profile);
  const auto read = ParseProfile(text, profile.folder);
  ASSERT_TRUE(read) << read.Why().message << "\n" << text;
  EXPECT_EQ(read->module, profile.module);
  EXPECT_EQ(read->config, profile.config);
  ASSERT_EQ(read->drives.size(), profile.drives.size());
  for (std::size_t i = 0; i < read->drives.size(); ++i) {
    EXPECT_EQ(read->drives[i].prefix, profile.drives[i].prefix);
    EXPECT_EQ(read->drives[i].folder, profile.drives[i].folder);
  }
  // What lies in the profile moves with it.
  EXPECT_NE(text.find("'C:' = 'c'"), std::string::npos) << text;
}

TEST(Profile, AMissingOrSpecialFileIsNamed) {
  const TempFolder folder;
  const auto missing = ReadProfile(folder.Path());
  ASSERT_FALSE(missing);
  EXPECT_NE(missing.Why().message.find("profile.toml: No such file"), std::string::npos);
  std::filesystem::create_directory(folder.Path() / "profile.toml");
  EXPECT_FALSE(ReadProfile(folder.Path()));
}

}  // namespace
}  // namespace pw
