#include "options/synchronize_page.h"

#include <utility>

#include "tests/options/options_fixture.h"

namespace pw::options {
namespace {

using test::Choose;
using test::ControlOf;

class SynchronizePageTest : public test::OptionsTest {};

TEST_F(SynchronizePageTest, StartsWithTheModeThatWasSet) {
  const std::pair<std::int32_t, std::string> choices[] = {
      {1012, "&Do not synchronize"},
      {1007, "&Synchronize"},
      {1008, "Delete and &overwrite during next synchronization"},
      {1009, "A&lways delete and overwrite"}};
  for (std::int32_t mode = -1; mode <= 4; ++mode) {
    source.SyncMode = mode;
    SynchronizePage page(manager);
    page.Show(pageWindow);
    for (std::int32_t i = 0; i < 4; ++i) {
      EXPECT_EQ(ControlOf(page, choices[i].first).text, choices[i].second);
      EXPECT_EQ(ControlOf(page, choices[i].first).chosen, i == mode) << i << " of " << mode;
    }
  }
}

TEST_F(SynchronizePageTest, TheThirdWordOfTheVersionIsHexadecimal) {
  const std::pair<std::optional<std::uint64_t>, const char*> cases[] = {
      {0x0001'000A'001F'FFFF, "PairWise Version 1.10.1F.65535"},
      {std::nullopt, "PairWise Version "}};
  for (const auto& [version, text] : cases) {
    platform.shell.moduleVersion = version;
    SynchronizePage page(manager);
    page.Show(pageWindow);
    page.Show(pageWindow);
    EXPECT_EQ(ControlOf(page, 1021).text, text);
  }
}

// One page, left several times. After each leave: whether it was left, and how often it has asked.
TEST_F(SynchronizePageTest, AsksBeforeAModeThatDeletes) {
  constexpr auto kYes = BoxAnswer::kYes;
  constexpr auto kNo = BoxAnswer::kNo;
  struct Step {
    std::int32_t choice;
    std::size_t asked;
    bool left;
  };
  const struct {
    const char* what;
    std::int32_t before;
    std::deque<BoxAnswer> answers;
    std::vector<Step> steps;
    std::int32_t after;
  } cases[] = {
      {"agreed to once", 1, {kYes}, {{1008, 1, true}, {1008, 1, true}}, 2},
      {"No asks again", 1, {kNo, kYes}, {{1009, 1, false}, {1009, 2, true}}, 3},
      {"No, then another", 1, {kNo}, {{1009, 1, false}, {1012, 1, true}}, 0},
      {"No keeps what was agreed",
       1,
       {kYes, kNo},
       {{1008, 1, true}, {1009, 2, false}, {1008, 2, true}},
       2},
      {"the other that deletes", 1, {kYes, kYes}, {{1008, 1, true}, {1009, 2, true}}, 3},
      {"another in between",
       1,
       {kYes, kYes},
       {{1008, 1, true}, {1007, 1, true}, {1008, 2, true}},
       2},
      {"set before", 2, {kYes}, {{1008, 1, true}}, 2},
      {"set before, but left", 2, {}, {{1007, 0, true}}, 1},
      {"nobody answers", 0, {}, {{1009, 1, false}, {1012, 1, true}}, 0},
      {"a mode without a control", 9, {}, {{0, 0, true}}, 9},
  };
  for (const auto& c : cases) {
    platform.dialogs.boxes.clear();
    platform.dialogs.boxAnswers = c.answers;
    source.SyncMode = c.before;
    SynchronizePage page(manager);
    page.Show(pageWindow);
    for (const Step& step : c.steps) {
      Choose(page, step.choice);
      EXPECT_EQ(page.Leave(), step.left) << c.what;
      EXPECT_EQ(page.Focus(), step.left ? 0 : 1007) << c.what;
      EXPECT_EQ(platform.dialogs.boxes.size(), step.asked) << c.what;
    }
    EXPECT_EQ(source.SyncMode, c.before) << c.what << ": only OK sets it";
    page.Accept();
    EXPECT_EQ(source.SyncMode, c.after) << c.what;
    for (const auto& box : platform.dialogs.boxes) {
      EXPECT_EQ(box.text,
                "Are you sure you want to delete all your PairWise Desktop data, then overwrite "
                "it?");
      EXPECT_EQ(box.flags, 0x124U);
      EXPECT_EQ(box.parent, pageWindow);
    }
  }
}

}  // namespace
}  // namespace pw::options
