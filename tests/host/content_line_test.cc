#include "host/formats/content_line.h"

#include <string>
#include <string_view>
#include <vector>

#include <gtest/gtest.h>

#include "host/formats/text_value.h"
#include "host/formats/transfer_encoding.h"

namespace pw {
namespace {

using Result = ContentLineReader::Result;

std::string Write(const ContentLine& line) {
  std::string out;
  AppendContentLine(out, line);
  return out;
}

// The lines as group, name, parameters and value in brackets, and each problem with its line.
std::string Read(std::string_view text, SoftBreaks softBreaks = SoftBreaks::kNone) {
  std::string seen;
  ContentLineReader reader(text, softBreaks);
  for (auto result = reader.Next(); result != Result::kEnd; result = reader.Next()) {
    seen += std::to_string(reader.Number());
    if (result == Result::kDamaged) {
      seen.append("!").append(reader.Problem()).append("\n");
      continue;
    }
    const ContentLine& line = reader.Line();
    seen += "(" + line.group + ")(" + line.name + ")";
    for (const ContentParameter& parameter : line.parameters) {
      seen += "{" + parameter.name;
      for (const std::string& value : parameter.values) seen += "|" + value;
      seen += "}";
    }
    seen += "[" + line.value + "]\n";
  }
  return seen;
}

TEST(ContentLine, ReadsEveryPart) {
  const struct {
    const char* text;
    const char* seen;
  } kCases[] = {
      {"TEL:1", "1()(TEL)[1]\n"},
      {"TEL:", "1()(TEL)[]\n"},
      {"item1.X-a_b:1:2;3,\"", "1(item1)(X-a_b)[1:2;3,\"]\n"},
      {"TEL;TYPE=HOME,fax;PREF=1:2", "1()(TEL){TYPE|HOME|fax}{PREF|1}[2]\n"},
      {"TEL;HOME;X=;Y=,:2", "1()(TEL){HOME}{X|}{Y||}[2]\n"},
      {"A;X=\"b:c;d,e\",f:2", "1()(A){X|b:c;d,e|f}[2]\n"},
      {"A;X=^'a^n^^^x^:2", "1()(A){X|\"a\n^^x^}[2]\n"},
      {"A;X=a\"b:2", "1()(A){X|a\"b}[2]\n"},
  };
  for (const auto& test : kCases) EXPECT_EQ(Read(test.text), test.seen) << test.text;
}

TEST(ContentLine, UnfoldsAnyLineEnds) {
  EXPECT_EQ(Read("\xEF\xBB\xBF"
                 "A:1\r\n  2\r\n\t3\r\n\r\nB\n :4\n\n\nC:5"),
            "1()(A)[1 23]\n5()(B)[4]\n9()(C)[5]\n");
  EXPECT_EQ(Read("A:1\r\r\nB:2\r"), "1()(A)[1\r]\n2()(B)[2]\n");
  EXPECT_EQ(Read(""), "");
}

TEST(ContentLine, NamesDamageAndGoesOn) {
  EXPECT_EQ(Read(":1\r\nA\r\nA;:1\r\nA;X=\"b:1\r\n  c\r\nA B:1\r\nA;X=\"b\"c:1\r\na.b.c:1\r\nOK:1"),
            "1!no property name\n"
            "2!no colon before the value\n"
            "3!a parameter without a name\n"
            "4!a quoted parameter that doesn't end\n"
            "6!a character before the colon that can't stand there\n"
            "7!a character before the colon that can't stand there\n"
            "8!a character before the colon that can't stand there\n"
            "9()(OK)[1]\n");
}

TEST(ContentLine, JoinsSoftBreaksOfQuotedPrintableOnly) {
  const char* text = "N;ENCODING=quoted-printable:a=\r\n b=\n=3D\r\nX:1=\r\n 2\r\n";
  EXPECT_EQ(Read(text, SoftBreaks::kQuotedPrintable),
            "1()(N){ENCODING|quoted-printable}[a b=3D]\n4()(X)[1=2]\n");
  EXPECT_EQ(Read(text),
            "1()(N){ENCODING|quoted-printable}[a=b=]\n3!no property name\n4()(X)[1=2]\n");
}

TEST(ContentLine, FoldsBetweenCharacters) {
  const std::string fill(69, 'x');
  const struct {
    std::string value;
    std::string written;
  } kCases[] = {
      {fill + "12345", "A:" + fill + "1234\r\n 5\r\n"},
      {fill + "1234", "A:" + fill + "1234\r\n"},
      {fill + "123\xC3\xA9z", "A:" + fill + "123\r\n \xC3\xA9z\r\n"},
      {fill + "1\xF0\x9F\x98\x80z", "A:" + fill + "1\r\n \xF0\x9F\x98\x80z\r\n"},
      {fill + "12\xC3\xA9", "A:" + fill + "12\xC3\xA9\r\n"},
      {fill + "1234" + std::string(75, 'y'),
       "A:" + fill + "1234\r\n " + std::string(74, 'y') + "\r\n y\r\n"},
      {fill + std::string(9, '\x80'),
       "A:" + fill + std::string(4, '\x80') + "\r\n " + std::string(5, '\x80') + "\r\n"},
  };
  for (const auto& test : kCases) EXPECT_EQ(Write({{}, "A", {}, test.value}), test.written);
}

TEST(ContentLine, ComesBackAsWritten) {
  const ContentLine lines[] = {
      {"g", "NAME", {{"WORD", {}}, {"P", {"", "a,b", "c;d", "e:f"}}}, "v"},
      {{}, "N", {{"P", {"\"quoted\"", "two\nlines", "^n", " blank "}}}, "  lead\t and \\n trail  "},
      {{}, "N", {{"P", {std::string(300, 'p')}}}, std::string(1000, ' ')},
      {{}, "N", {}, std::string("\0\x01\r\x7F\xFF", 5)},
  };
  std::string text;
  for (const ContentLine& line : lines) AppendContentLine(text, line);
  ContentLineReader reader(text);
  for (const ContentLine& line : lines) {
    ASSERT_EQ(reader.Next(), Result::kLine);
    EXPECT_EQ(reader.Line(), line);
  }
  EXPECT_EQ(reader.Next(), Result::kEnd);
  EXPECT_EQ(Write({{}, "N", {}, "a\nB:c"}), "N:a\\nB:c\r\n") << "a value can't begin a line";
}

TEST(ContentLine, FindsParametersWithoutCase) {
  const ContentLine line = {{}, "N", {{"Type", {"a"}}, {"TYPE", {"b"}}}, {}};
  ASSERT_NE(line.Find("TYPE"), nullptr);
  EXPECT_EQ(line.Find("TYPE")->values.front(), "a");
  EXPECT_EQ(line.Find("TYP"), nullptr);
}

TEST(TextValue, EscapesAndBack) {
  const std::string text = "a\\b,c;d\ne:f\\n\"\r\n";
  EXPECT_EQ(EscapeText(text), "a\\\\b\\,c\\;d\\ne:f\\\\n\"\r\\n");
  EXPECT_EQ(UnescapeText(EscapeText(text)), text);
  EXPECT_EQ(UnescapeText("a\\Nb\\:c\\xd\\"), "a\nb:c\\xd\\");
}

TEST(TextValue, SplitsWhereNothingProtects) {
  using Pieces = std::vector<std::string_view>;
  EXPECT_EQ(SplitValue("", ';'), Pieces({""}));
  EXPECT_EQ(SplitValue(";a;", ';'), Pieces({"", "a", ""}));
  EXPECT_EQ(SplitValue("a\\;b;c\\\\;d\\", ';'), Pieces({"a\\;b", "c\\\\", "d\\"}));
}

TEST(TransferEncoding, Base64) {
  const struct {
    std::string bytes;
    const char* text;
  } kCases[] = {{"", ""}, {"f", "Zg=="}, {"fo", "Zm8="}, {"foo", "Zm9v"}, {"\xFB\xFF\xBF", "+/+/"}};
  for (const auto& test : kCases) {
    EXPECT_EQ(EncodeBase64(test.bytes), test.text);
    EXPECT_EQ(DecodeBase64(test.text), test.bytes);
  }
  EXPECT_EQ(DecodeBase64(" Z m\r\n8"), "fo");
  for (const char* damaged : {"Zm9vY", "Zm-v", "Zg==Zg", "\x80\x80"}) {
    EXPECT_EQ(DecodeBase64(damaged), std::nullopt) << damaged;
  }
}

TEST(TransferEncoding, HexPairs) {
  EXPECT_EQ(DecodeQuotedPrintable("=C3=a9=3D=\x3Dz=4"), "\xC3\xA9===z=4");
  const std::string bytes("a-._~9%/ \0\xFF", 11);
  EXPECT_EQ(EncodePercent(bytes), "a-._~9%25%2F%20%00%FF");
  EXPECT_EQ(DecodePercent(EncodePercent(bytes)), bytes);
}

}  // namespace
}  // namespace pw
