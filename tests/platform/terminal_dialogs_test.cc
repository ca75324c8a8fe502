#include "platform/posix/terminal_dialogs.h"

#include <algorithm>
#include <sstream>
#include <string>
#include <vector>

#include <gtest/gtest.h>

namespace pw {
namespace {

using testing::IsSubstring;

class TerminalDialogsTest : public testing::Test {
 protected:
  // Somebody will type these lines, and then leave.
  void Type(const std::string& lines) {
    in.clear();
    in.str(lines);
    out.str("");
  }

  // What the end of the input was taken as, if the last lines shown say so.
  std::string Ended() const {
    constexpr std::string_view kTold = "\nthe input has ended, taken as \"";
    const std::string shown = out.str();
    const std::size_t at = shown.rfind(kTold);
    if (at == std::string::npos || !shown.ends_with("\"\n")) return "";
    return shown.substr(at + kTold.size(), shown.size() - at - kTold.size() - 2);
  }

  std::istringstream in;
  std::ostringstream out;
  TerminalDialogs dialogs{in, out, true, 30};
  TerminalDialogs toNobody{in, out, false};
};

TEST_F(TerminalDialogsTest, BoxesTakeWordsTheDefaultAndAtTheEndTheSafeAnswer) {
  constexpr std::uint32_t kSecond = kBoxYesNo | kBoxSecondButtonIsDefault | kBoxQuestion;
  const struct {
    std::uint32_t flags;
    const char* typed;
    BoxAnswer answer;
    const char* ended = "";  // what the end of the input was taken as
  } cases[] = {
      {kBoxYesNo, "\n", BoxAnswer::kYes},
      {kSecond, "\n", BoxAnswer::kNo},
      {kSecond, " YES \r\n", BoxAnswer::kYes},
      {kBoxYesNo, "n\n", BoxAnswer::kNo},
      {kBoxYesNo, "maybe\nyess\n?\nno", BoxAnswer::kNo},
      {kBoxYesNo, "", BoxAnswer::kNo, "no"},
      {kBoxYesNo, "what\n", BoxAnswer::kNo, "no"},
      {kBoxYesNo, "\xFF\xCE\xB1\ny\n", BoxAnswer::kYes},
      {kBoxOkCancel, "\n", BoxAnswer::kOk},
      {kBoxOkCancel, "c\n", BoxAnswer::kCancel},
      {kBoxOkCancel, "", BoxAnswer::kCancel, "cancel"},
      {kBoxOk | kBoxWarning, "\n", BoxAnswer::kOk},
      {kBoxOk | kBoxSecondButtonIsDefault, "\n", BoxAnswer::kOk},
      {kBoxOk, "", BoxAnswer::kOk, "ok"},
  };
  for (const auto& c : cases) {
    Type(c.typed);
    EXPECT_EQ(dialogs.ShowMessage(kNoWindow, "", "Well?", c.flags), c.answer) << c.typed;
    EXPECT_EQ(out.str().rfind("Well?\n", 0), 0U) << out.str();
    EXPECT_EQ(Ended(), c.ended) << c.typed;
  }
}

TEST_F(TerminalDialogsTest, WithNobodyThereOneLineTellsTheSafeAnswer) {
  Type("yes\nyes\n");
  EXPECT_EQ(toNobody.ShowMessage(kNoWindow, "", "Delete\r\nall?", kBoxYesNo), BoxAnswer::kNo);
  EXPECT_EQ(out.str(), "nobody to ask, taken as \"no\": Delete all?\n");
  out.str("");
  EXPECT_EQ(toNobody.ShowMessage(kNoWindow, "", "a\nb", kBoxOk), BoxAnswer::kOk);
  EXPECT_EQ(out.str(), "nobody to ask, taken as \"ok\": a b\n");
  out.str("");
  EXPECT_EQ(toNobody.ChooseFolder(kNoWindow, "Where?", "C:\\Data", nullptr), std::nullopt);
  EXPECT_EQ(out.str(), "nobody to ask, taken as \"cancel\": Where?\n");
}

TEST_F(TerminalDialogsTest, ShowsTheCodePageAsUtf8AndNoControlCharacters) {
  Type("\n");
  dialogs.ShowMessage(kNoWindow, "", "\x80 \xE4\x1B[2J\x07\x9D\tx\r\ny", kBoxOk);
  EXPECT_EQ(out.str().rfind("\xE2\x82\xAC \xC3\xA4?[2J?? x\ny\n", 0), 0U) << out.str();
}

TEST_F(TerminalDialogsTest, ChoosesAFolderThatNothingIsToBeComplainedOf) {
  std::vector<std::string> tried;
  const FolderComplaint complaint = [&](const std::string& folder) -> std::optional<std::string> {
    tried.push_back(folder);
    if (folder == "C:\\\xC4") return std::nullopt;
    return "Not " + folder + ".";
  };
  const auto choose = [&](const std::string& typed) {
    Type(typed);
    tried.clear();
    return dialogs.ChooseFolder(kNoWindow, "Where?", "C:\\Start", complaint);
  };
  EXPECT_EQ(choose("\nC:\\None\nC:\\\xC3\x84\n"), "C:\\\xC4");
  EXPECT_EQ(tried, (std::vector<std::string>{"C:\\Start", "C:\\None", "C:\\\xC4"}));
  EXPECT_PRED_FORMAT2(IsSubstring, "Not C:\\Start.\n", out.str());
  EXPECT_EQ(choose("C:\\None\n<\nC:\\\xC3\x84\n"), std::nullopt);
  EXPECT_EQ(Ended(), "");
  EXPECT_EQ(choose("C:\\None\n"), std::nullopt);
  EXPECT_EQ(Ended(), "cancel");
  EXPECT_EQ(choose("C:\\\xCE\xB1\n"), std::nullopt);  // which the organiser can't name
  EXPECT_TRUE(tried.empty());
  choose("c\n=\n");
  EXPECT_EQ(tried, (std::vector<std::string>{"c", "="})) << "names like any other";
}

TEST_F(TerminalDialogsTest, HelpIsOfTheInnermostContext) {
  const auto help = [&] {
    Type("?\n\n");
    dialogs.ShowMessage(kNoWindow, "", "Well?", kBoxOk);
    return out.str();
  };
  dialogs.EnterHelp("outer");
  dialogs.EnterHelp("inner");
  EXPECT_PRED_FORMAT2(IsSubstring, "\"inner\"", help());
  dialogs.LeaveHelp();
  EXPECT_PRED_FORMAT2(IsSubstring, "\"outer\"", help());
  dialogs.LeaveHelp();
  EXPECT_PRED_FORMAT2(IsSubstring, "no help", help());
}

TEST_F(TerminalDialogsTest, IconsAreDistinctAndTheCallers) {
  const IconHandle first = dialogs.LoadIcon(129);
  const IconHandle second = dialogs.LoadIcon(129);
  EXPECT_NE(first, nullptr);
  EXPECT_NE(first, second);
  dialogs.DestroyIcon(first);
  dialogs.DestroyIcon(second);
  dialogs.DestroyIcon(nullptr);
}

class TestPage : public PageModel {
 public:
  explicit TestPage(std::string caption) : caption(std::move(caption)) {
    controls = {
        {0, ControlKind::kLabel, "All that is asked here is kept", {}, false, {}},
        {1, ControlKind::kLabel, "&Folder:", {}, false, {}},
        {2, ControlKind::kText, "C:\\Old", {}, false, {}},
        {3, ControlKind::kChoice, "Ask", {}, true, {}},
        {4, ControlKind::kChoice, "Do && go", {}, false, {}},
        {5, ControlKind::kButton, "&Browse", {}, false, {}},
        {6, ControlKind::kList, "", {"same", "same"}, false, 0},
        {7, ControlKind::kChoice, "Alone", {}, true, {}},
        {0, ControlKind::kLabel, "Name:", {}, false, {}},
        {9, ControlKind::kCombo, "other", {"first", "second", ""}, false, {}},
    };
  }

  std::string Caption() override { return caption; }
  std::vector<DialogControl>& Controls() override { return controls; }
  void Press(std::int32_t control) override {
    pressed.push_back(control);
    controls.push_back({8, ControlKind::kLabel, "Pressed", {}, false, {}});
  }
  bool Leave() override { return ++leaves > refusals; }
  bool Next() override {
    ++nexts;
    return Leave();
  }
  void Show(WindowId /*window*/) override { ++shown; }
  void Help() override { ++helped; }
  std::int32_t Focus() override { return 6; }

  std::string caption;
  std::vector<DialogControl> controls;
  std::vector<std::int32_t> pressed;
  int refusals = 0;
  int leaves = 0;  // forward or back
  int nexts = 0;   // forward alone
  int shown = 0;
  int helped = 0;
};

class TestSheet : public SheetModel {
 public:
  std::string Title() override { return "Options"; }
  std::vector<PageModel*> Pages() override { return {&first, &second}; }

  TestPage first{"First"};
  TestPage second{"Second"};
};

TEST_F(TerminalDialogsTest, WorksTheControlsOfAPage) {
  TestSheet sheet;
  // The text, the second choice, the button, the list; then on over both pages.
  Type("1\nC:\\N\xC3\xA4w\n3\n4\n5\n2\n\n\n");
  EXPECT_EQ(dialogs.ShowSheet(kNoWindow, sheet), SheetAnswer::kOk);
  const auto& controls = sheet.first.controls;
  EXPECT_EQ(controls[2].text, "C:\\N\xE4w");
  EXPECT_FALSE(controls[3].chosen);
  EXPECT_TRUE(controls[4].chosen);
  EXPECT_TRUE(controls[7].chosen);  // of another group
  EXPECT_EQ(controls[6].selected, 1U);
  EXPECT_EQ(sheet.first.pressed, (std::vector<std::int32_t>{5, 6})) << "the list's choice is told";
  EXPECT_PRED_FORMAT2(IsSubstring,
                      "\nOptions, page 1 of 2: First\n\n"
                      "  All that is asked here is\n  kept\n\n"
                      "  1  Folder:  C:\\Old\n  2  (*) Ask\n  3  ( ) Do & go\n  4  <Browse>\n"
                      "> 5  same\n  6  (*) Alone\n  7  Name:    other\n\nNumber",
                      out.str());
  EXPECT_PRED_FORMAT2(IsSubstring, "  7  Name:    other\n\n  Pressed\n\nNumber", out.str());
  EXPECT_PRED_FORMAT2(IsSubstring, "  1  (*) same\n  2  ( ) same\nNumber", out.str());
}

TEST_F(TerminalDialogsTest, AComboTakesAnItemOrAnyText) {
  const struct {
    const char* typed;
    const char* text;
  } cases[] = {{"2", "second"}, {"4", "other"}, {"=4", "4"}, {"Work", "Work"},
               {"-", "-"},      {"", "other"},  {"3", ""},   {"=2", "2"},
               {"=", ""},       {"=?", "?"},    {"==", "="}};
  for (const auto& c : cases) {
    TestSheet sheet;
    Type(std::string("7\n") + c.typed + "\nc\n");
    dialogs.ShowSheet(kNoWindow, sheet);
    EXPECT_EQ(sheet.first.controls.back().text, c.text) << c.typed;
    EXPECT_PRED_FORMAT2(IsSubstring, "  1  ( ) first\n  2  ( ) second\n  3  ( ) (empty)\n",
                        out.str());
  }
}

TEST_F(TerminalDialogsTest, TellsAPageWhatBecomesOfIt) {
  TestSheet sheet;
  // Help and a refusal leave the page as it is shown; then on, back, and on to the end.
  sheet.first.refusals = 1;
  Type("?\n\n\nb\n\n\n");
  EXPECT_EQ(dialogs.ShowSheet(kNoWindow, sheet), SheetAnswer::kOk);
  EXPECT_EQ(sheet.first.shown, 2);
  EXPECT_EQ(sheet.first.helped, 1);
  EXPECT_EQ(sheet.first.nexts, 3);
  EXPECT_EQ(sheet.second.shown, 2);
  EXPECT_EQ(sheet.second.leaves, 2);
  EXPECT_EQ(sheet.second.nexts, 1) << "it was left back first";
}

TEST_F(TerminalDialogsTest, LeavesASheetOnlyWhereEachPageLets) {
  const struct {
    const char* typed;
    SheetAnswer answer;
    int firstLeaves, secondLeaves;
  } cases[] = {
      {"\n\n", SheetAnswer::kCancel, 1, 1},  // the second page refuses once
      {"\n\n\n", SheetAnswer::kOk, 1, 2},
      {"\n\nb\n\n\n", SheetAnswer::kOk, 2, 3},
      {"b\n\nc\n", SheetAnswer::kCancel, 1, 0},
      {"0\n8\n99999999999\n-1\nc\n", SheetAnswer::kCancel, 0, 0},
      {"", SheetAnswer::kCancel, 0, 0},
      {"1\n", SheetAnswer::kCancel, 0, 0},
      {"1\n\n5\n\n5\n3\nc\n", SheetAnswer::kCancel, 0, 0},  // kept as they are
  };
  for (const auto& c : cases) {
    TestSheet sheet;
    sheet.second.refusals = 1;
    Type(c.typed);
    EXPECT_EQ(dialogs.ShowSheet(kNoWindow, sheet), c.answer) << c.typed;
    EXPECT_EQ(sheet.first.leaves, c.firstLeaves) << c.typed;
    EXPECT_EQ(sheet.second.leaves, c.secondLeaves) << c.typed;
    EXPECT_EQ(sheet.first.controls[2].text, "C:\\Old") << c.typed;
    EXPECT_EQ(sheet.first.controls[6].selected, 0U) << c.typed;
    EXPECT_TRUE(sheet.first.pressed.empty()) << c.typed;
    const bool ends = c.answer == SheetAnswer::kCancel && !std::string(c.typed).ends_with("c\n");
    EXPECT_EQ(Ended(), ends ? "cancel" : "") << c.typed;
  }
  TestSheet sheet;
  Type("\n\n");
  EXPECT_EQ(toNobody.ShowSheet(kNoWindow, sheet), SheetAnswer::kCancel);
  EXPECT_EQ(out.str(), "nobody to ask, taken as \"cancel\": Options\n");
}

}  // namespace
}  // namespace pw
