#include "cardfile/create_cardfile.h"

#include <string>
#include <utility>
#include <vector>

#include <gtest/gtest.h>

#include "cardfile/card_file.h"
#include "cardfile/card_templates.h"
#include "cardfile/template_dialog.h"
#include "platform/testing/test_platform.h"
#include "tests/support/bytes.h"
#include "tests/support/dialog_controls.h"

namespace {

constexpr const char* kPath = "C:\\New.WMCard";
constexpr const char* kList = "C:\\Data\\crdstyle.dat";

using Names = std::vector<std::string>;

// "name=fields" of each.
Names TemplatesOf(const std::string& text) {
  Names found;
  for (const auto& each : pw::cardfile::ReadTemplates(text)) {
    found.push_back(std::string(each.name) + "=" + std::string(each.fields));
  }
  return found;
}

TEST(CardTemplatesTest, AreALineEach) {
  const struct {
    const char* what;
    std::string text;
    Names templates;
  } cases[] = {
      {"none", "", {}},
      {"no brackets", "Name\tPhone\r\n", {}},
      {"two", "[A]x\ty\r\n[B]z\r\n", {"A=x\ty", "B=z"}},
      {"without a line end", "[A]x\r\n[B]z", {"A=x", "B=z"}},
      {"either bracket", "]A[x\r\n[B[y\r\n", {"A=x", "B=y"}},
      {"empty lines between", "\r\n\n[A]x\n\r\n\n[B]y", {"A=x", "B=y"}},
      {"no closing bracket", "[A]x\r\n[B and all", {"A=x", "B and all="}},
      {"a bracket at the end", "[A]x\r\n[", {"A=x", "="}},
      {"brackets among the fields begin others",
       "[A]x\t[y]\tz\r\n[B]w\r\n",
       {"A=x\t[y]\tz", "y=\tz", "B=w"}},
      {"but not in the last line", "[A]x\t[y]\tz\r\n", {"A=x\t[y]\tz"}},
      {"no fields", "[A]\r\n[B]\r\n", {"A=", "B="}},
      {"a name over a line end", "[A\r\nB]x", {"A\r\nB=x"}},
  };
  for (const auto& each : cases) EXPECT_EQ(TemplatesOf(each.text), each.templates) << each.what;
  // As long as the text, whatever it holds.
  EXPECT_EQ(TemplatesOf("\n" + std::string(1 << 20, '[')).size(), 1U);
  EXPECT_EQ(pw::cardfile::ReadTemplates(std::string(1 << 20, '[') + "\n.").size(), 1U << 19);
  const std::string manyAndFar = std::string(1 << 20, '[') + std::string(1 << 20, '\n') + "[B]z";
  const auto templates = pw::cardfile::ReadTemplates(manyAndFar);
  ASSERT_EQ(templates.size(), (1U << 19) + 1);
  EXPECT_EQ(templates.front().fields.size(), (1U << 20) - 2);
  EXPECT_EQ(templates.back().fields, "z");
  EXPECT_EQ(pw::cardfile::FieldsOf("\ta\t\tb c\t"), (Names{"a", "b c"}));
}

class CreateCardfileTest : public testing::Test {
 protected:
  CreateCardfileTest() { platform.files.PutFolder("C:\\"); }

  // The key line of a file of these fields.
  std::string KeyLineOf(const Names& names) {
    platform.files.Delete(kPath);
    EXPECT_EQ(CreateCardfile(kPath, names), 0);
    const std::string line = platform.files.Get(kPath)->substr(1361 + 64, 128);
    return line.substr(0, line.find('\0'));
  }
  pw::TestPlatform platform;
};

TEST_F(CreateCardfileTest, ItsCardsAreKnownByNameAndCompanyAndThenByTheFirstFields) {
  const std::pair<Names, const char*> cases[] = {
      {{"a", "Company", "First Name", "b", "Last Name"}, "Last Name, First Name, Company"},
      {{"a", "Company", "b", "c"}, "Company, a, b"},
      {{"a", "First Name", "Last Name", "c"}, "Last Name, First Name, a"},
      {{"a", "b", "c", "d"}, "a, b, c"},
      {{"First Name"}, "First Name"},
      {{"last name", "b"}, "last name, b"},
      {{"Company", "Company"}, "Company, Company"},
      {{"Name", "", "Phone"}, "Name, , Phone"},
      {{"", "b"}, ", b"},
      {{"Last Name", ""}, "Last Name, "},
      {{}, ""},
  };
  for (const auto& [names, line] : cases) EXPECT_EQ(KeyLineOf(names), line);
  EXPECT_EQ(KeyLineOf({std::string(200, 'k')}), std::string(128, 'k')) << "its line is full";
}

TEST_F(CreateCardfileTest, TheFileHoldsItsFieldsAndNoCard) {
  const Names names = {"Name", "", "Phone"};
  EXPECT_EQ(CreateCardfile(kPath, names), 0);
  const std::string bytes = *platform.files.Get(kPath);
  EXPECT_EQ(bytes.substr(1361 + 64 + 128), pw::test::Word(15, 2) + "Name\r\n\r\nPhone\r\n");
  EXPECT_EQ(bytes.substr(65, 4), pw::test::Word(0x611 + 2 + 15, 4));
  WMCardFile file;
  ASSERT_EQ(file.Load(kPath), 0);
  EXPECT_TRUE(file.IsBlank());
  EXPECT_EQ(CreateCardfile(kPath, {"Other"}), 1) << "it is there";
  EXPECT_EQ(*platform.files.Get(kPath), bytes);
  EXPECT_EQ(CreateCardfile("C:\\nowhere\\New.WMCard", {"Name"}), 1);
}

TEST_F(CreateCardfileTest, NamesThatTheSizeCannotCountAreLeftOut) {
  const std::string longName(40'000, 'n');
  EXPECT_EQ(CreateCardfile(kPath, {"a", longName, longName, "b"}), 0);
  EXPECT_EQ(platform.files.Get(kPath)->size(), 1361U + 64 + 128 + 2 + 3 + 40'002);
}

TEST_F(CreateCardfileTest, ThePersonChoosesATemplate) {
  platform.files.Put(kList, "[Business]Company\tPhone\r\n[Same]a\r\n[Same]b\tc\r\n");
  Names shown;
  platform.dialogs.sheetAnswers.push_back([&](pw::SheetModel& sheet) {
    pw::PageModel& page = *sheet.Pages().front();
    const auto show = [&](std::int32_t number) {
      const pw::DialogControl& control = pw::test::ControlOf(page, number);
      if (!control.text.empty()) shown.push_back(control.text);
      shown.insert(shown.end(), control.items.begin(), control.items.end());
    };
    for (const std::int32_t number : {WMTemplatePage::kNewCardfile, WMTemplatePage::kTemplates,
                                      WMTemplatePage::kFieldsLabel, WMTemplatePage::kFields}) {
      show(number);
    }
    pw::test::ControlOf(page, WMTemplatePage::kTemplates).selected = 2;
    page.Press(WMTemplatePage::kTemplates);
    show(WMTemplatePage::kFields);
    return page.Leave() ? pw::SheetAnswer::kOk : pw::SheetAnswer::kCancel;
  });
  EXPECT_EQ(ChooseTemplate(pw::kNoWindow, "New.WMCard", kList), "b\tc") << "not its namesake";
  EXPECT_EQ(shown, (Names{"New cardfile: New.WMCard", "[Business default]", "Same", "Same",
                          "Field Names:", "Company", "Phone", "b", "c"}));
  platform.dialogs.sheetAnswers.push_back([](pw::SheetModel&) { return pw::SheetAnswer::kOk; });
  EXPECT_EQ(ChooseTemplate(pw::kNoWindow, "x", kList), "Company\tPhone") << "the first as it is";
  EXPECT_EQ(ChooseTemplate(pw::kNoWindow, "x", kList), std::nullopt) << "nobody answers";
  const std::size_t sheets = platform.dialogs.sheets.size();
  platform.files.Put(kList, "");
  EXPECT_EQ(ChooseTemplate(pw::kNoWindow, "x", kList), std::nullopt);
  EXPECT_EQ(ChooseTemplate(pw::kNoWindow, "x", "C:\\none"), std::nullopt);
  EXPECT_EQ(platform.dialogs.sheets.size(), sheets) << "there is nothing to choose among";
}

}  // namespace
