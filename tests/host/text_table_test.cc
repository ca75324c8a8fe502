#include "host/text_table.h"

#include <sstream>

#include <gtest/gtest.h>

#include "host/line_reader.h"

namespace pw {
namespace {

TEST(TextTable, FitsTextByTheColumnsThatItTakes) {
  const struct {
    const char* text;
    std::size_t width;
    const char* fitted;
  } cases[] = {
      {"abc", 5, "abc  "},     {"abc", 3, "abc"},
      {"abcd", 3, "ab…"},      {"ab", 1, "…"},
      {"ab", 0, ""},           {"Zoë", 4, "Zoë "},
      {"日本語", 6, "日本語"}, {"日本語", 5, "日本…"},
      {"日本語", 4, "日… "},   {"e\u0301x", 3, "e\u0301x "},
  };
  for (const auto& each : cases) EXPECT_EQ(Fitted(each.text, each.width), each.fitted);
}

TEST(TextTable, KeepsControlCharactersFromTheTerminal) {
  EXPECT_EQ(OneLine("a\r\nb\nc\td\re"), "a b c d e");
  EXPECT_EQ(OneLine("\x1B[2J\x7F\u009B\xFF!"),
            "?[2J??"
            "?!");
}

TEST(TextTable, ForPeopleLeavesOutWhatIsEmptyOrDoesNotFit) {
  const TextTable table{
      {"ID", "First", "Fax", "City", "Note"},
      {{"1", "Ann\r\nLee", "", "Sundsåker", "long note here"}, {"22", "Bo", "", "", ""}}};
  EXPECT_EQ(RenderForPeople(table, 40),
            "ID  First    City       Note\n"
            "1   Ann Lee  Sundsåker  long note here\n"
            "22  Bo\n");
  EXPECT_EQ(RenderForPeople(table, 24),
            "ID  First    City\n"
            "1   Ann Lee  Sundsåker\n"
            "22  Bo\n");
}

TEST(TextTable, ForProgramsKeepsEveryColumn) {
  const TextTable table{{"ID", "Fax", "Note"}, {{"1", "", "a\tb"}}};
  EXPECT_EQ(RenderForPrograms(table), "ID\tFax\tNote\n1\t\ta b\n");
}

TEST(LineReader, GivesLinesAndPassesOverThoseTooLong) {
  std::istringstream in("ab\n\nabcde\nabcdef\nlast");
  const struct {
    LineState state;
    const char* line;
  } expected[] = {{LineState::kRead, "ab"},    {LineState::kRead, ""},
                  {LineState::kRead, "abcde"}, {LineState::kTooLong, "abcde"},
                  {LineState::kRead, "last"},  {LineState::kNone, ""}};
  std::string line;
  for (const auto& each : expected) {
    EXPECT_EQ(ReadLine(in, 5, line), each.state);
    EXPECT_EQ(line, each.line);
  }
}

}  // namespace
}  // namespace pw
