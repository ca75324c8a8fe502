#include "host/formats/csv.h"

#include <string>
#include <vector>

#include <gtest/gtest.h>

namespace pw {
namespace {

TEST(Csv, WritesOneColumnForEachName) {
  const std::vector<Contact> contacts = {
      {"17", "1999-12-31T23:59:59", {{"Name", "Lee, Ann"}, {"Phone", "1"}, {"Phone", "2\r\n3"}}},
      {"18", "", {{"Notes \"x\"", "say \"hi\""}, {"Name", " B "}, {"ID", "x"}}},
  };
  EXPECT_EQ(WriteCsv(contacts),
            "id,changed,Name,Phone,Phone (2),\"Notes \"\"x\"\"\",ID (2)\r\n"
            "17,1999-12-31T23:59:59,\"Lee, Ann\",1,\"2\r\n3\",,\r\n"
            "18,, B ,,,\"say \"\"hi\"\"\",x\r\n");
  EXPECT_EQ(WriteCsv({}), "id,changed\r\n");
}

TEST(Csv, HeadingsStayUniqueBesideNamesThatLookNumbered) {
  const std::string text =
      WriteCsv({{"1", "", {{"A", ""}, {"A", ""}, {"a (2)", ""}, {"A", ""}, {"changed", ""}}}});
  EXPECT_EQ(text.substr(0, text.find('\r')), "id,changed,A,A (2),a (2) (2),A (3),changed (2)");
}

TEST(Csv, ComesBackAsWritten) {
  const std::vector<Contact> contacts = {
      {"1", "2000-01-01T00:00:00", {{"Name", "\"\""}, {"With, comma", "a\nb\rc\r\n"}}},
      {"2", "", {{"Name", std::string(100000, '"')}, {"With, comma", "Zo\xC3\xAB \t"}}},
      {"", "", {{"Name", ""}, {"With, comma", ""}}},
  };
  const CsvFile file = ReadCsv(WriteCsv(contacts));
  EXPECT_EQ(file.errors.Count(), 0U);
  EXPECT_EQ(file.contacts, contacts);
}

TEST(Csv, ReadsForeignFiles) {
  const CsvFile file = ReadCsv("\xEF\xBB\xBF\nName,ID,Changed,id\n\r\nAnn,7,x,\"8\"\nBob\r,,,");
  EXPECT_EQ(file.errors.Count(), 0U);
  const std::vector<Contact> expected = {{"7", "x", {{"Name", "Ann"}, {"id", "8"}}},
                                         {"", "", {{"Name", "Bob\r"}, {"id", ""}}}};
  EXPECT_EQ(file.contacts, expected);
  EXPECT_TRUE(ReadCsv("").contacts.empty());

  // What another program saved in the organiser's code page, be it in a heading.
  const CsvFile western = ReadCsv(
      "Stra\xDF"
      "e,B\nZo\xEB,Zo\xC3\xAB");
  EXPECT_EQ(western.contacts, std::vector<Contact>({{"",
                                                     "",
                                                     {{"Stra\xC3\x9F"
                                                       "e",
                                                       "Zo\xC3\xAB"},
                                                      {"B", "Zo\xC3\xAB"}}}}));
  EXPECT_EQ(western.names, std::vector<std::string>({"Stra\xC3\x9F"
                                                     "e",
                                                     "B"}));
}

TEST(Csv, KeepsSoManyRows) {
  const CsvFile file = ReadCsv("a\n1\n2\n3", 2);
  EXPECT_EQ(file.contacts.size(), 2U);
  EXPECT_EQ(file.errors.Texts(),
            std::vector<std::string>({"line 4: " + std::string(kTooManyContacts)}));
}

TEST(Csv, ReportsBadRowsByLine) {
  const CsvFile file = ReadCsv(
      "a,b\r\n"
      "\"1\r\n2\",ok\r\n"        // lines 2 and 3
      "1,2,3\r\n"                // 4
      "x\"y,2\r\n"               // 5
      "\"x\"y,\"2\r\n"           // 6
      "3,4\r\n"                  // 7
      "only\r\n"                 // 8
      "5,\"never ends\r\n6,7");  // 9
  const std::vector<Contact> expected = {{"", "", {{"a", "1\r\n2"}, {"b", "ok"}}},
                                         {"", "", {{"a", "3"}, {"b", "4"}}},
                                         {"", "", {{"a", "6"}, {"b", "7"}}}};
  EXPECT_EQ(file.contacts, expected);
  const std::vector<std::string> errors = {
      "line 4: 3 cells below 2 headings", "line 5: a quote inside a cell",
      "line 6: text behind a quoted cell", "line 8: 1 cells below 2 headings",
      "line 9: a quoted cell that doesn't end"};
  EXPECT_EQ(file.errors.Texts(), errors);
}

TEST(Csv, RefusesBadHeadings) {
  const struct {
    std::string text;
    const char* error;
  } kCases[] = {
      {"a,b,a\r\n1,2,3", "line 1: the heading \"a\" twice"},
      {"\r\na,,b\r\n1,2,3", "line 2: a column without a heading"},
      {"a,\"b", "line 1: a quoted cell that doesn't end"},
      {std::string(4096, 'a') + "\r\n1", "line 1: headings longer than a cardfile's names can be"},
  };
  for (const auto& test : kCases) {
    const CsvFile file = ReadCsv(test.text);
    EXPECT_EQ(file.errors.Texts(), std::vector<std::string>({test.error}));
    EXPECT_TRUE(file.contacts.empty());
  }
  EXPECT_EQ(ReadCsv(std::string(4095, 'a') + "\r\n1").contacts.size(), 1U);
}

TEST(Csv, CountsAllErrorsAndKeepsSome) {
  std::string text = "a,b\n";
  for (int i = 0; i < 500; ++i) text += "x\n";
  const LineErrors errors = ReadCsv(text).errors;
  EXPECT_EQ(errors.Count(), 500U);
  EXPECT_EQ(errors.Texts().size(), LineErrors::kMostKept);
  EXPECT_EQ(errors.Told().back(), "and 400 more of this kind");
  EXPECT_EQ(ReadCsv("a\x01,a\x01").errors.Texts().front(), "line 1: the heading \"a \" twice")
      << "pieces of the file can't steer a terminal";
}

}  // namespace
}  // namespace pw
