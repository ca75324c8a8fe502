#include "host/profile_edit.h"

#include <cstdint>
#include <map>
#include <string>

#include <gtest/gtest.h>

namespace pw {
namespace {

// The profile that the text describes, with other settings.
Profile Wanted(const std::string& text, const std::map<std::uint32_t, std::string>& config,
               std::int32_t syncMode) {
  auto profile = ParseProfile(text, "/p");
  EXPECT_TRUE(profile) << text;
  for (const auto& [id, value] : config) profile->config[id] = value;
  profile->syncMode = syncMode;
  return *profile;
}

TEST(ProfileEdit, ChangesTheSettingsAndNothingElse) {
  const struct {
    const char* text;
    const char* edited;
  } cases[] = {
      {"# mine\ncodepage = 1252\n[config] # here\n2 = 'C:\\Data' # the old one\n05 = 'A'\n"
       "4000 = 'k'\n[drives]\nC = 'c'",
       "sync = 'off'\n# mine\ncodepage = 1252\n[config] # here\n2 = 'C:\\New' # the old one\n"
       "05 = 'J\xC3\xBCrgen'\n4000 = 'k'\n[drives]\nC = 'c'"},
      {"sync = \"overwrite-always\" # for now\n[config]\n"
       "5 = \"\xE2\x82\xAC \xC3\xA4\" # \xC3\xA4\n",
       "sync = 'off' # for now\n[config]\n2 = 'C:\\New'\n"
       "5 = 'J\xC3\xBCrgen' # \xC3\xA4\n"},
      {"codepage = 1252\n",
       "sync = 'off'\ncodepage = 1252\n\n[config]\n2 = 'C:\\New'\n5 = 'J\xC3\xBCrgen'\n"},
      {"config.2 = 'C:\\Data'\r\nconfig.5 = ''\r\n",
       "sync = 'off'\nconfig.2 = 'C:\\New'\r\nconfig.5 = 'J\xC3\xBCrgen'\r\n"},
      {"config = { 2 = 'C:\\Data', 5 = '' } # all\n",
       "sync = 'off'\nconfig = { 2 = 'C:\\New', 5 = 'J\xC3\xBCrgen' } # all\n"},
  };
  for (const auto& c : cases) {
    const Profile wanted = Wanted(c.text, {{2, "C:\\New"}, {5, "J\xFCrgen"}}, 0);
    EXPECT_EQ(EditedDescription(c.text, wanted), c.edited);
  }
}

TEST(ProfileEdit, LeavesATextThatSaysItAlready) {
  const std::string text = "[config]\n5 = \"A\"\n2 = 'C:'\n";
  EXPECT_EQ(EditedDescription(text, Wanted(text, {}, kSyncModeOn)), text);
}

TEST(ProfileEdit, WritesAFreshTextWhereTheOldOneCantTakeTheChange) {
  for (const char* text :
       {"config = { 2 = 'C:\\Data' }\n", "config.2 = 'C:\\Data'\n", "[config]"}) {
    const Profile wanted = Wanted(text, {{5, "A'\n"}}, 3);
    const auto read = ParseProfile(EditedDescription(text, wanted), "/p");
    ASSERT_TRUE(read) << text;
    EXPECT_EQ(read->config, wanted.config) << text;
    EXPECT_EQ(read->syncMode, 3) << text;
  }
}

}  // namespace
}  // namespace pw
