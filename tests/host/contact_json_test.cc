#include "host/formats/contact_json.h"

#include <regex>
#include <string>
#include <string_view>
#include <vector>

#include <gtest/gtest.h>

namespace pw {
namespace {

TEST(ContactJson, WritesAContactALine) {
  const std::vector<Contact> contacts = {
      {"17",
       "1999-12-31T23:59:59",
       {{"Name", "Zo\xC3\xAB \"Z\""}, {"A", "1\r\n2"}, {"Bad", "\xFF"}}},
      {"18", "", {{"Phone", "1"}, {"Fax", ""}, {"Phone", "2"}}},
      {"", "", {}},
  };
  EXPECT_EQ(
      WriteContactsJson(contacts),
      "[\n"
      "  {\"id\": \"17\", \"changed\": \"1999-12-31T23:59:59\", \"fields\": "
      "{\"Name\": \"Zo\xC3\xAB \\\"Z\\\"\", \"A\": \"1\\r\\n2\", \"Bad\": \"\xEF\xBF\xBD\"}},\n"
      "  {\"id\": \"18\", \"changed\": \"\", \"fields\": "
      "[[\"Phone\", \"1\"], [\"Fax\", \"\"], [\"Phone\", \"2\"]]},\n"
      "  {\"id\": \"\", \"changed\": \"\", \"fields\": {}}\n"
      "]\n");
  EXPECT_EQ(WriteContactsJson({}), "[]\n");
}

TEST(ContactJson, ComesBackAsWritten) {
  const std::vector<Contact> contacts = {
      {"1", "2000-01-01T00:00:00", {{"Z", "\\ \" / \t"}, {"A", std::string("\0\x1F\x7F", 3)}}},
      {"2", "", {{"N", "1"}, {"M", ""}, {"N", "1"}, {"N", "\xE2\x82\xAC"}}},
      {"3", "", {}},
  };
  const JsonContacts file = ReadContactsJson(WriteContactsJson(contacts));
  EXPECT_EQ(file.errors.Count(), 0U);
  EXPECT_EQ(file.contacts, contacts);
}

TEST(ContactJson, ReadsWhatOthersWrite) {
  const JsonContacts file = ReadContactsJson(
      R"([{"x": [[{"id": "no"}], 1, {}], "fields": {"B": "1", "B": "2"}, "y": null, "id": "4"},
          {"fields": []}, {"fields": {}, "z": [], "w": {"fields": {"no": "no"}}}])");
  EXPECT_EQ(file.errors.Count(), 0U);
  const std::vector<Contact> expected = {
      {"4", "", {{"B", "1"}, {"B", "2"}}}, {"", "", {}}, {"", "", {}}};
  EXPECT_EQ(file.contacts, expected);
  const auto remark = [](const char* name) {
    return "\"" + std::string(name) + "\" is no member of a contact, and is left out";
  };
  const ContactRemarks remarks = {{0, {remark("x"), remark("y")}}, {2, {remark("z"), remark("w")}}};
  EXPECT_EQ(file.remarks, remarks);
}

// Reading goes on behind a contact that isn't of the form.
TEST(ContactJson, LeavesOutWhatIsWrong) {
  const struct {
    const char* text;
    const char* error;
  } kCases[] = {
      {"[7, OK]", "contact 1: expected an object"},
      {"[[{\"fields\": {}}], OK]", "contact 1: expected an object"},
      {"[{}, OK]", "contact 1: it has no \"fields\""},
      {"[{\"record\": {\"Subject\": \"x\"}}, OK]", "contact 1: it has no \"fields\""},
      {"[{\"id\": 7}, OK]", "contact 1: expected a text as id"},
      {"[{\"id\": {\"a\": [1]}, \"fields\": {}}, OK]", "contact 1: expected a text as id"},
      {"[{\"changed\": [[]]}, OK]", "contact 1: expected a text as time of change"},
      {"[{\"fields\": \"x\"}, OK]", "contact 1: expected fields as an object or as pairs"},
      {"[OK, {\"fields\": {\"a\": {}}}]", "contact 2: expected a text as each field's value"},
      {"[{\"fields\": [\"a\"]}, OK]", "contact 1: expected two texts"},
      {"[{\"fields\": [[]]}, OK]", "contact 1: expected two texts"},
      {"[{\"fields\": [[\"a\"]]}, OK]", "contact 1: expected two texts"},
      {"[{\"fields\": [[\"a\", \"b\", \"c\"]]}, OK]", "contact 1: expected two texts"},
  };
  const std::string fine = R"({"fields": {"A": "1"}})";
  for (const auto& test : kCases) {
    SCOPED_TRACE(test.text);
    const JsonContacts file =
        ReadContactsJson(std::regex_replace(test.text, std::regex("OK"), fine));
    ASSERT_EQ(file.errors.Count(), 1U);
    EXPECT_EQ(file.errors.Texts().front().rfind(test.error, 0), 0U) << file.errors.Texts().front();
    EXPECT_EQ(file.contacts, std::vector<Contact>({{"", "", {{"A", "1"}}}}));
  }
}

TEST(ContactJson, EndsWhereTheTextIsNoJson) {
  const struct {
    const char* text;
    const char* error;
    std::size_t contacts;
  } kCases[] = {
      {"", "line 1: no JSON, and reading ends there", 0},
      {"[\n{\"fields\": {}}\n", "line 3: no JSON, and reading ends there", 1},
      {"[{\"fields\": {}}]\n[]", "line 2: no JSON, and reading ends there", 1},
      {"[{\"fields\": {}}, {\"id\": \"2\", oops}]", "line 1: no JSON, and reading ends there", 1},
      {"{}", "this is no JSON array of contacts", 0},
      {"7", "this is no JSON array of contacts", 0},
  };
  for (const auto& test : kCases) {
    SCOPED_TRACE(test.text);
    const JsonContacts file = ReadContactsJson(test.text);
    EXPECT_EQ(file.errors.Texts(), std::vector<std::string>({test.error}));
    EXPECT_EQ(file.contacts.size(), test.contacts);
  }
}

TEST(ContactJson, SurvivesAnyNestingAndAnyCut) {
  const std::string deep =
      "[{\"fields\": {}, \"x\": " + std::string(200000, '[') + std::string(200000, ']') + "}]";
  EXPECT_EQ(ReadContactsJson(deep).errors.Count(), 0U);
  const std::string text = WriteContactsJson({{"1", "", {{"A", "\xC3\xA9"}, {"A", "b"}}}});
  for (std::size_t length = 0; length + 2 < text.size(); ++length) {
    const std::string_view cut = std::string_view(text).substr(0, length);
    EXPECT_NE(ReadContactsJson(cut).errors.Count(), 0U) << length;
  }
}

}  // namespace
}  // namespace pw
