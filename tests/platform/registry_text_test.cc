#include "platform/posix/registry_text.h"

#include <optional>
#include <sstream>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include <gtest/gtest.h>

namespace pw {
namespace {

using namespace std::string_literals;

const std::string kHeader4 = "REGEDIT4\r\n\r\n";
const std::string kHeader5 = "Windows Registry Editor Version 5.00\r\n\r\n";

std::string Utf16(std::u16string_view text) {
  std::string bytes = "\xFF\xFE";
  for (const char16_t unit : text) {
    bytes.push_back(static_cast<char>(unit & 0xFF));
    bytes.push_back(static_cast<char>(unit >> 8));
  }
  return bytes;
}

using Complaints = std::vector<std::size_t>;  // numbers of the lines

RegistryText Parse(std::string_view bytes, Complaints* complaints = nullptr) {
  auto text = RegistryText::Parse(bytes, [&](std::size_t line, const char*) {
    if (complaints != nullptr) complaints->push_back(line);
  });
  EXPECT_TRUE(text.has_value());
  return text ? std::move(*text) : RegistryText();
}

std::optional<RegistryValue> Find(const RegistryText& text, std::string_view path,
                                  std::string_view name) {
  const RegistryValue* const value = text.Find(path, name);
  return value == nullptr ? std::nullopt : std::optional(*value);
}

RegistryValue Binary(std::string_view bytes, std::uint32_t type = 3) {
  return {static_cast<RegistryType>(type), std::string(bytes)};
}

TEST(RegistryTextTest, ReadsEveryFormOfValue) {
  const struct {
    std::string line;
    RegistryValue expected;
  } cases[] = {
      {R"("x"="text")", TextValue("text")},
      {R"("x"="")", TextValue("")},
      {R"("x"="C:\\Data\\ and \"quotes\"")", TextValue(R"(C:\Data\ and "quotes")")},
      {"\"x\"=\"\xE4\x80\"", TextValue("\xE4\x80")},
      {" \"x\" = \"blanks\"  ; and a comment \\", TextValue("blanks")},
      {R"("X"=dword:00000032)", NumberValue(50)},
      {R"("x"=DWORD:fFFFffff)", NumberValue(0xFFFFFFFF)},
      {R"("x"=dword:7)", NumberValue(7)},
      {R"("x"=hex(4):32,00,00,00)", NumberValue(50)},
      {R"("x"=hex(4):32,00)", Binary("2\0"s, 4)},
      {R"("x"=hex:)", Binary("")},
      {R"("x"=hex:01,f,FF)", Binary("\x01\x0F\xFF")},
      {"\"x\"=hex:01,\\\r\n  02,\\  \r\n03\\\r\n\t,04 ; end", Binary("\x01\x02\x03\x04")},
      {R"("x"=hex(b):01,02)", Binary("\x01\x02", 11)},
      {R"("x"=hex(ffffffff):00)", Binary("\0"s, 0xFFFFFFFF)},
      {R"("x"=hex(1):41,00)", TextValue("A")},
      {R"("x"=hex(1):41,e4)", TextValue("A\xE4")},
      {R"("x"=hex(1):41,00,00)", TextValue("A\0"s)},
      {R"("x"=hex(2):25,78,25,00)", {RegistryType::kExpandableText, "%x%"}},
  };
  for (const auto& test : cases) {
    Complaints complaints;
    const std::string bytes = kHeader4 + "[HKEY_LOCAL_MACHINE\\K]\r\n" + test.line + "\r\n";
    const RegistryText text = Parse(bytes, &complaints);
    EXPECT_EQ(Find(text, "K", "x"), test.expected) << test.line;
    EXPECT_EQ(complaints, Complaints()) << test.line;
    EXPECT_EQ(text.Render(), bytes) << test.line;
  }
}

TEST(RegistryTextTest, ReadsTextInTheFilesOwnEncoding) {
  const std::u16string text16 =
      u"Windows Registry Editor Version "
      u"5.00\n[HKLM\\K\u00D6]\n\"n\u20AC\"=\"\u00E4\u0416\U0001F600\"\n"
      u"\"h\"=hex(1):e4,00,16,04,00,00\n";
  const std::string text8 =
      "Windows Registry Editor Version "
      "5.00\n[HKLM\\K\u00D6]\n\"n\u20AC\"=\"\u00E4\u0416\U0001F600\"\n"
      "\"h\"=hex(1):e4,00,16,04,00,00\n";
  const std::string ansi = "REGEDIT4\n[HKLM\\K\xD6]\n\"n\x80\"=\"\xE4??\"\n\"h\"=hex(1):e4,3f,00\n";
  for (const std::string& bytes : {Utf16(text16), text8, "\xEF\xBB\xBF" + text8, ansi}) {
    const RegistryText text = Parse(bytes);
    EXPECT_EQ(Find(text, "K\xD6", "n\x80"), TextValue("\xE4??")) << bytes;
    EXPECT_EQ(Find(text, "k\xF6", "N\x80"), TextValue("\xE4??")) << "letter case, " << bytes;
    EXPECT_EQ(Find(text, "K\xD6", "h"), TextValue("\xE4?")) << bytes;
    EXPECT_EQ(text.Render(), bytes);
  }
}

TEST(RegistryTextTest, OtherFilesAreRefused) {
  for (const std::string& bytes :
       {"REGEDIT"s, "REGEDIT5\r\n"s, " REGEDIT4\r\n"s, "\r\nREGEDIT4\r\n"s, "REGEDIT4x\r\n"s,
        "\xFF\xFE"s, "\xFF\xFER"s, "\xEF\xBB\xBF"s, "\n"s, "[HKLM\\K]\n"s, "W\0i\0n\0d\0o\0w\0s\0"s,
        "\xFE\xFF\0R\0E"s}) {
    EXPECT_FALSE(RegistryText::Parse(bytes, {}).has_value()) << bytes;
  }
  for (const std::string& bytes : {"REGEDIT4"s, "REGEDIT4 \n"s, Utf16(u"REGEDIT4\r\n")}) {
    EXPECT_TRUE(RegistryText::Parse(bytes, {}).has_value()) << bytes;
  }
  EXPECT_EQ(Parse("").Render(), RegistryText().Render()) << "no bytes are an empty registry";
}

TEST(RegistryTextTest, BadLinesAreToldAndSkippedAndKept) {
  std::istringstream cases(R"(junk|x=1|[HKLM\open|[-HKLM]|"x|"x=1|"x"|"x"=|"x"=5|"x"=text|"x"=--|)"
                           R"("x"="open|"x"="C:\Data"|"x\y"=""|"x"="" more|)"
                           R"("x"=dword:|"x"=dword:x|"x"=dword:123456789|"x"=dword:1,2|)"
                           R"("x"=hex|"x"=hex:0g|"x"=hex:001|"x"=hex:1,,2|"x"=hex:1,|"x"=hex:1 2|)"
                           R"("x"=hex():1|"x"=hex(g):1|"x"=hex(1:1|"x"=hex(123456789):1|)"
                           R"("x"=hex:01,\)");
  int tried = 0;
  for (std::string line; std::getline(cases, line, '|'); ++tried) {
    Complaints complaints;
    const std::string bytes =
        "REGEDIT4\n[HKLM\\K]\n\"x\"=\"before\"\n" + line + "\n[HKLM\\L]\n\"y\"=\"behind\"\n";
    const RegistryText text = Parse(bytes, &complaints);
    EXPECT_EQ(complaints, Complaints{4}) << line;
    EXPECT_EQ(Find(text, "K", "x"), TextValue("before")) << line;
    EXPECT_EQ(Find(text, "L", "y"), TextValue("behind")) << line;
    EXPECT_EQ(text.Render(), bytes) << line;
  }
  EXPECT_EQ(tried, 30);
}

TEST(RegistryTextTest, LinesAreCountedAsTheyStandInTheFile) {
  Complaints complaints;
  Parse("REGEDIT4\r\n\r\n[HKLM\\K]\r\n\"x\"=hex:01,\\\r\n02,\\\r\n03\r\njunk\r\n\r\njunk",
        &complaints);
  EXPECT_EQ(complaints, (Complaints{7, 9}));
  complaints.clear();
  Parse("REGEDIT4\n\"x\"=\"no key yet\"\n[HKLM\\K\n\"x\"=\"nor here\"\n[-HKLM\\K]\n\"x\"=1\n",
        &complaints);
  EXPECT_EQ(complaints, (Complaints{2, 3, 4, 6}));
  complaints.clear();
  Parse("REGEDIT4\n[HKEY_CURRENT_USER\\K]\njunk\n\"x\"=1\n[HKLM]\n", &complaints);
  EXPECT_EQ(complaints, Complaints()) << "other roots are nobody's business";
  const RegistryText text = Parse(kHeader5 + "[HKLM\\K]\n\"x\"=hex(1):41,00,42\n", &complaints);
  EXPECT_EQ(complaints, Complaints{4}) << "half a character";
  EXPECT_EQ(Find(text, "K", "x"), std::nullopt);
}

TEST(RegistryTextTest, LaterLinesOverrideEarlierOnes) {
  const RegistryText text = Parse(
      "REGEDIT4\n"
      "[HKEY_LOCAL_MACHINE\\Soft\\One\\Deep]\n@=\"deep\"\n"
      "[hklm\\SOFT\\one]\n\"a\"=\"1\"\n\"A\"=\"2\"\n\"b\"=\"1\"\n\"c\"=\"1\"\n\"\"=\"default\"\n"
      "[HKLM\\Soft\\Two\\Deep]\n@=\"gone\"\n"
      "[HKLM\\Soft\\Two]\n@=\"gone too\"\n"
      "[HKLM\\Soft\\One]\n\"B\"=-\n\"c\"=\"2\"\n"
      "[-HKLM\\Soft\\two]\n[-HKLM\\Missing\\Key]\n"
      "[HKLM\\Soft\\Two\\New]\n"
      "[HKLM\\Odd]Name]\n@=\"bracket\"\n");
  EXPECT_EQ(Find(text, "Soft\\One", "a"), TextValue("2"));
  EXPECT_EQ(Find(text, "Soft\\One", "b"), std::nullopt);
  EXPECT_EQ(Find(text, "soft\\one", "C"), TextValue("2"));
  EXPECT_EQ(Find(text, "Soft\\One", ""), TextValue("default"));
  EXPECT_EQ(Find(text, "Soft\\One\\Deep", ""), TextValue("deep"));
  EXPECT_EQ(Find(text, "\\Soft\\\\One\\", "a"), TextValue("2"));
  EXPECT_EQ(Find(text, "Odd]Name", ""), TextValue("bracket"));

  EXPECT_EQ(Find(text, "Soft\\Two", ""), std::nullopt);
  EXPECT_TRUE(text.HasKey("Soft\\Two")) << "a later section names a key under it";
  EXPECT_FALSE(text.HasKey("Soft\\Two\\Deep"));
  for (const char* const there : {"", "Soft", "SOFT\\TWO\\NEW", "Odd]Name"}) {
    EXPECT_TRUE(text.HasKey(there)) << there;
  }
  for (const char* const missing : {"Sof", "Soft\\On", "Missing", "Soft\\One\\Deep\\er", "Odd"}) {
    EXPECT_FALSE(text.HasKey(missing)) << missing;
  }
}

TEST(RegistryTextTest, NamesOutsideTheCodePageAreOnlyCarried) {
  const std::string bytes = kHeader5 +
                            "[HKLM\\K]\r\n\"?\"=\"mine\"\r\n\"\u0416\"=\"theirs\"\r\n"
                            "[HKLM\\K\\\u0416\\L]\r\n\"x\"=\"y\"\r\njunk\r\n"
                            "[-HKLM\\K\\\u0416]\r\n";
  Complaints complaints;
  RegistryText text = Parse(bytes, &complaints);
  EXPECT_EQ(complaints, Complaints());
  EXPECT_EQ(Find(text, "K", "?"), TextValue("mine"));
  EXPECT_FALSE(text.HasKey("K\\?"));
  EXPECT_EQ(text.Render(), bytes);
}

TEST(RegistryTextTest, ChangesAlterOnlyTheirOwnLines) {
  const std::string before =
      "REGEDIT4\r\n"
      "\n"
      "; by hand\n"
      "[HKEY_CURRENT_USER\\K]\r\n\"x\"=\"other\"\r\n"
      "[HKLM\\K]\r\n"
      "\"Number\" = dword:0001  ; kept\r\n"
      "junk\r\n"
      "\"Text\"=\"a\"\n"
      "\"Bytes\"=hex:01,\\\r\n  02\r\n"
      "\"Gone\"=\"x\"\r\n\"Gone\"=-\r\n"
      "\r\n"
      "; about L\r\n"
      "[HKLM\\L]\r\n@=\"l\"";
  const std::string after =
      "REGEDIT4\r\n"
      "\n"
      "; by hand\n"
      "[HKEY_CURRENT_USER\\K]\r\n\"x\"=\"other\"\r\n"
      "[HKLM\\K]\r\n"
      "\"Number\" = dword:00000032  ; kept\r\n"
      "junk\r\n"
      "\"Text\"=\"C:\\\\Data \\\"\xE4\\\"\"\n"
      "\"Bytes\"=hex:ff\r\n"
      "\"Gone\"=\"x\"\r\n\"Gone\"=-\r\n"
      "\"New\"=\"n\"\r\n"
      "\"Gone\"=\"back\"\r\n"
      "@=hex(b):07\r\n"
      "\r\n"
      "; about L\r\n"
      "[HKLM\\L]\r\n@=\"l\"\r\n\"x\"=\"y\"\r\n"
      "\r\n[HKEY_LOCAL_MACHINE\\k\\Deep]\r\n@=\"d\"\r\n"
      "\r\n[HKEY_LOCAL_MACHINE\\Empty]\r\n";
  RegistryText text = Parse(before);
  EXPECT_FALSE(text.IsAltered());
  EXPECT_TRUE(text.AddKey("k"));
  EXPECT_TRUE(text.Set("K", "text", TextValue("a")));
  EXPECT_FALSE(text.IsAltered()) << "all was so already";
  EXPECT_TRUE(text.Set("K", "number", NumberValue(50)));
  EXPECT_TRUE(text.Set("K", "text", TextValue("C:\\Data \"\xE4\"")));
  EXPECT_TRUE(text.Set("k", "BYTES", Binary("\xFF")));
  EXPECT_TRUE(text.Set("K", "New", TextValue("n")));
  EXPECT_TRUE(text.Set("K", "Gone", TextValue("back")));
  EXPECT_TRUE(text.Set("K", "", Binary("\x07", 11)));
  EXPECT_TRUE(text.Set("L", "x", TextValue("y")));
  EXPECT_TRUE(text.Set("\\k\\\\Deep\\", "", TextValue("d")));
  EXPECT_TRUE(text.AddKey("Empty"));
  EXPECT_TRUE(text.IsAltered());
  EXPECT_EQ(text.Render(), after);

  Complaints complaints;
  const RegistryText again = Parse(after, &complaints);
  EXPECT_EQ(complaints, Complaints{8});
  EXPECT_EQ(Find(again, "K", "Gone"), TextValue("back"));
  EXPECT_EQ(Find(again, "K\\Deep", ""), TextValue("d"));
  EXPECT_TRUE(again.HasKey("Empty"));
}

TEST(RegistryTextTest, ChangesFollowTheFilesEncodingAndLineEnds) {
  RegistryText utf16 =
      Parse(Utf16(u"Windows Registry Editor Version 5.00\n[HKLM\\K]\n\"a\"=\"\xD800\"") + "\x07");
  EXPECT_TRUE(utf16.Set("\xD6", "\x80", TextValue("\xE4")));
  EXPECT_EQ(utf16.Render(),
            Utf16(u"Windows Registry Editor Version 5.00\n[HKLM\\K]\n\"a\"=\"\xD800\"\n\n"
                  u"[HKEY_LOCAL_MACHINE\\\u00D6]\n\"\u20AC\"=\"\u00E4\"\n") +
                "\x07")
      << "the broken character and the half one are as they were";

  RegistryText utf8 = Parse("Windows Registry Editor Version 5.00\n[HKLM\\K]\n\"a\"=\"\xFF\"\n");
  EXPECT_TRUE(utf8.Set("K", "\x80", TextValue("\xE4\n")));
  EXPECT_EQ(utf8.Render(),
            "Windows Registry Editor Version 5.00\n[HKLM\\K]\n\"a\"=\"\xFF\"\n"
            "\"\u20AC\"=hex(1):e4,00,0a,00,00,00\n");

  RegistryText fresh;
  EXPECT_TRUE(fresh.Set("K", "a", NumberValue(1)));
  EXPECT_EQ(fresh.Render(), Utf16(u"Windows Registry Editor Version 5.00\r\n\r\n"
                                  u"[HKEY_LOCAL_MACHINE\\K]\r\n\"a\"=dword:00000001\r\n"));
}

TEST(RegistryTextTest, LongBytesGoOnInFurtherLines) {
  RegistryText text = Parse(kHeader4 + "[HKLM\\K]\r\n");
  EXPECT_TRUE(text.Set("K", "bytes", Binary(std::string(48, '\xAB'))));
  const std::string bytes = text.Render();
  EXPECT_EQ(
      bytes,
      kHeader4 +
          "[HKLM\\K]\r\n"
          "\"bytes\"=hex:ab,ab,ab,ab,ab,ab,ab,ab,ab,ab,ab,ab,ab,ab,ab,ab,ab,ab,ab,ab,ab,ab,\\\r\n"
          "  ab,ab,ab,ab,ab,ab,ab,ab,ab,ab,ab,ab,ab,ab,ab,ab,ab,ab,ab,ab,ab,ab,ab,ab,ab,\\\r\n"
          "  ab\r\n");
  EXPECT_EQ(Find(Parse(bytes), "K", "bytes"), Binary(std::string(48, '\xAB')));
}

// A file of this encoding holds every value that can be set.
class RegistryTextEncodingTest : public ::testing::TestWithParam<std::string> {};

TEST_P(RegistryTextEncodingTest, WhatIsSetIsReadBack) {
  std::string everyByte;
  for (int i = 0; i < 256; ++i) everyByte.push_back(static_cast<char>(i));
  const RegistryValue values[] = {
      TextValue(""),
      TextValue(everyByte),
      TextValue(everyByte.substr(0x20)),
      TextValue("ends in \\"),
      TextValue("\"quoted\"; [no key]"),
      TextValue("two\r\nlines"),
      TextValue("\0"s),
      TextValue("\t"),
      {RegistryType::kExpandableText, "%A%\0"s},
      NumberValue(0x89ABCDEF),
      Binary("", 4),
      Binary("12345", 4),
      Binary(everyByte),
      Binary("", 0),
      Binary(everyByte, 7),
      Binary("x", 0xFFFFFFFF),
  };
  const std::string names[] = {
      "", "x", "@", "a\"b\\", "; = [x]", everyByte.substr(0x20, 0x40), everyByte.substr(0x80)};
  RegistryText text = Parse(GetParam());
  for (const RegistryValue& value : values) {
    // Added to one key, and put in place of the value before in the other.
    const std::string added = "Added\\" + std::to_string(&value - values) + "]";
    for (const std::string& name : names) {
      ASSERT_TRUE(text.Set(added, name, value));
      ASSERT_TRUE(text.Set("Replaced", name, value));
    }
    Complaints complaints;
    const RegistryText again = Parse(text.Render(), &complaints);
    EXPECT_EQ(complaints, Complaints());
    for (const std::string& name : names) {
      EXPECT_EQ(Find(again, added, name), value) << name;
      EXPECT_EQ(Find(again, "Replaced", name), value) << name;
    }
  }
}

INSTANTIATE_TEST_SUITE_P(All, RegistryTextEncodingTest,
                         ::testing::Values("", kHeader4, kHeader5, "\xEF\xBB\xBF" + kHeader5,
                                           "\xEF\xBB\xBF" + kHeader4, Utf16(u"REGEDIT4\n")));

TEST(RegistryTextTest, AnyCutAndAnyDamageIsRenderedAsItCame) {
  const std::string files[] = {
      kHeader4 + "[HKLM\\K]\r\n\"x\"=hex(1):41,\\\r\n  00\r\n@=\"\xE4\"\r\n; c\r\n",
      kHeader5 + "[HKLM\\K]\n\"\u20AC\"=\"\u00E4\\\\\"\n",
      Utf16(u"Windows Registry Editor Version 5.00\n[HKLM\\K]\n\"a\"=\"\U0001F600\"\n"),
  };
  const auto check = [](const std::string& bytes) {
    const auto text = RegistryText::Parse(bytes, {});
    EXPECT_TRUE(!text || bytes.empty() || text->Render() == bytes) << bytes;
  };
  for (const std::string& file : files) {
    for (std::size_t i = 0; i < file.size(); ++i) {
      check(file.substr(0, i));
      for (const char damage : {'\0', '\n', '"', '\\', '\xD8', '\xFF'}) {
        std::string bytes = file;
        bytes[i] = damage;
        check(bytes);
      }
    }
  }
}

}  // namespace
}  // namespace pw
