#include "host/answers.h"

#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "framework/engine_context.h"
#include "host/category_refresh.h"

namespace pw {
namespace {

const std::vector<std::int32_t> kOptions = {kSynchronizeDialog, kFolderDialog};

TEST(Answers, ComeInTheOrderInWhichAPersonWouldWork) {
  const auto answers = ParseAnswers(
      "[folder]\ncalendar = 'J\xC3\xBCrgen'\nfolder = ''\nbrowse = 'C:\\New'\n"
      "[synchronize]\nsure = true\nmode = \"overwrite-always\"\n",
      "a.toml", kOptions);
  ASSERT_TRUE(answers) << answers.Why().message;
  EXPECT_TRUE(answers->isSure);
  std::string given;
  for (const Answer& answer : answers->given) {
    given += std::to_string(answer.dialog) + "/" + std::to_string(answer.control) + "=" +
             answer.text + "@" + answer.where + " ";
  }
  EXPECT_EQ(given,
            "128/1009=@a.toml:7 129/1009=C:\\New@a.toml:4 129/1008=@a.toml:3 "
            "129/1022=J\xFCrgen@a.toml:2 ");
}

TEST(Answers, NameTheLineThatIsWrong) {
  const struct {
    const char* text;
    const char* message;
  } cases[] = {
      {"[folder]\nfolder = C\n", "a.toml:2: "},
      {"\n[fold]\n", "a.toml:2: there is no page 'fold' here"},
      {"folder = 'C:'\n", "a.toml:1: there is no page 'folder' here"},
      {"[setup]\nfolder = 'C:'\n", "a.toml:1: there is no page 'setup' here"},
      {"[folder]\nmode = 'on'\n", "a.toml:2: page 'folder' has no 'mode'"},
      {"[folder]\n'' = 'on'\n", "a.toml:2: page 'folder' has no ''"},
      {"[folder]\ncalendar = 3\n", "a.toml:2: calendar must be a text in quotes"},
      {"[folder]\nfolder = '\xE4\xB8\x80'\n", "a.toml:2: has characters outside of code page 1252"},
      {"[synchronize]\nmode = 'maybe'\n", "a.toml:2: mode must be \"off\", "},
      {"[synchronize]\nsure = 'yes'\n", "a.toml:2: sure must be true or false"},
  };
  for (const auto& c : cases) {
    const auto answers = ParseAnswers(c.text, "a.toml", kOptions);
    ASSERT_FALSE(answers) << c.text;
    EXPECT_EQ(answers.Why().message.find(c.message), 0U) << answers.Why().message;
  }
}

// Nothing is known of the others but their address.
TEST(CategoryRefresh, IsTakenOnceAndOnlyForTheSourceAtHand) {
  const PWApplicationSource source;
  auto* const gone = reinterpret_cast<PWApplicationSource*>(8);
  auto& requests = Engine().pendingRefreshes;
  requests = {{gone, true}};
  EXPECT_FALSE(TakeRefreshRequests(source));
  requests = {{gone, true}, {const_cast<PWApplicationSource*>(&source), true}, {gone, false}};
  EXPECT_TRUE(TakeRefreshRequests(source));
  EXPECT_TRUE(requests.empty());
  EXPECT_FALSE(TakeRefreshRequests(source));
}

}  // namespace
}  // namespace pw
