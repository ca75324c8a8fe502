#include "host/formats/contact_json.h"

#include <string>
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
  EXPECT_EQ(file.error, "");
  EXPECT_EQ(file.contacts, contacts);
}

TEST(ContactJson, ReadsWhatOthersWrite) {
  const JsonContacts file = ReadContactsJson(
      R"([{"x": [[{"id": "no"}], 1, {}], "fields": {"B": "1", "B": "2"}, "y": null, "id": "4"},
          {"z": [], "w": {"fields": {"no": "no"}}}])");
  EXPECT_EQ(file.error, "");
  const std::vector<Contact> expected = {{"4", "", {{"B", "1"}, {"B", "2"}}}, {"", "", {}}};
  EXPECT_EQ(file.contacts, expected);
}

TEST(ContactJson, NamesTheFirstError) {
  const struct {
    const char* text;
    const char* error;
  } kCases[] = {
      {"", "line 1: no JSON"},
      {"[\n{}\n", "line 3: no JSON"},
      {"[{}]\n[]", "line 2: no JSON"},
      {"{}", "contact 1: expected an array of contacts"},
      {"7", "contact 1: expected an array of contacts"},
      {"[{}, []]", "contact 2: expected an object"},
      {"[{}, {\"id\": 7}]", "contact 2: expected a text as id"},
      {"[{\"changed\": []}]", "contact 1: expected a text as time of change"},
      {"[{\"fields\": \"x\"}]", "contact 1: expected fields as an object or as pairs"},
      {"[{\"fields\": {\"a\": {}}}]", "contact 1: expected a text as each field's value"},
      {"[{\"fields\": [\"a\"]}]", "contact 1: expected two texts, name and value, for each field"},
      {"[{\"fields\": [[]]}]", "contact 1: expected two texts, name and value, for each field"},
      {"[{\"fields\": [[\"a\"]]}]",
       "contact 1: expected two texts, name and value, for each field"},
      {"[{\"fields\": [[\"a\", \"b\", \"c\"]]}]",
       "contact 1: expected two texts, name and value, for each field"},
  };
  for (const auto& test : kCases) EXPECT_EQ(ReadContactsJson(test.text).error, test.error);
  const JsonContacts file = ReadContactsJson("[{\"id\": \"1\"}, {\"id\": \"2\", oops}]");
  EXPECT_EQ(file.contacts.size(), 1U) << "what was complete stays";
}

TEST(ContactJson, SurvivesAnyNestingAndAnyCut) {
  const std::string deep = "[{\"x\": " + std::string(200000, '[') + std::string(200000, ']') + "}]";
  EXPECT_EQ(ReadContactsJson(deep).error, "");
  const std::string text = WriteContactsJson({{"1", "", {{"A", "\xC3\xA9"}, {"A", "b"}}}});
  for (std::size_t length = 0; length + 2 < text.size(); ++length) {
    EXPECT_NE(ReadContactsJson(std::string_view(text).substr(0, length)).error, "") << length;
  }
}

}  // namespace
}  // namespace pw
