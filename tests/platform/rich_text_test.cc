#include <cstddef>
#include <string>

#include <gtest/gtest.h>

#include "platform/portable/portable_rich_text.h"

namespace {

constexpr std::size_t kNoLimit = 1 << 30;

std::string Plain(const std::string& rich) {
  return pw::PortableRichText().ToPlain(rich);
}

std::string Rich(const std::string& plain, const pw::RichTextFont& font = {"Courier New", 24, 0}) {
  return pw::PortableRichText().FromPlain(plain, font, kNoLimit).value_or("too large");
}

// Documents as various programs write them, and as only a malicious one does.
TEST(RichTextTest, PlainTextOfDocuments) {
  const struct {
    const char* what;
    std::string rich;
    std::string plain;
  } cases[] = {
      {"a rich-edit control of version 1",
       "{\\rtf1\\ansi\\deff0\\deftab720{\\fonttbl{\\f0\\fswiss MS Sans "
       "Serif;}{\\f1\\froman\\fcharset2"
       " Symbol;}{\\f2\\fswiss "
       "Arial;}}\r\n{\\colortbl\\red0\\green0\\blue0;}\r\n\\deflang1033\\pard"
       "\\plain\\f2\\fs20 Call the harbour\r\n\\par before nine\r\n\\par }\r\n",
       "Call the harbour\r\nbefore nine"},
      {"one of version 2",
       "{\\rtf1\\ansi\\ansicpg1252\\deff0\\deflang1033{\\fonttbl{\\f0\\fnil\\fcharset0 Arial;}}\r\n"
       "\\viewkind4\\uc1\\pard\\f0\\fs20 one\\par\r\n\\par\r\nthree\\par\r\n}\r\n",
       "one\r\n\r\nthree"},
      {"one of version 4, with a generator",
       "{\\rtf1\\ansi\\ansicpg1252\\deff0\\nouicompat{\\fonttbl{\\f0\\fnil\\fcharset0 "
       "Calibri;}}\r\n"
       "{\\*\\generator Riched20 10.0.19041}\\viewkind4\\uc1 \r\n\\pard\\sa200\\sl276\\slmult1\\f0"
       "\\fs22\\lang9 text\\par\r\n}\r\n",
       "text"},
      {"an old word processor: styles, info, sections, a footer",
       "{\\rtf1\\pc {\\info{\\author Ada}{\\creatim\\yr1996\\mo3}}{\\fonttbl\\f0\\froman Tms Rmn;}"
       "{\\stylesheet{\\s0 Normal;}{\\s1\\b heading 1;}}\\sectd{\\footer \\pard page \\chpgn\\par}"
       "\\pard\\s1 Title\\par\\pard Body\\sect second\\page third}",
       "Title\r\nBody\r\nsecond\r\nthird"},
      {"a newer one: revision and list tables, themes",
       "{\\rtf1\\adeflang1025\\ansi{\\*\\revtbl{Unknown;}}{\\*\\listtable{\\list{\\listlevel"
       "{\\leveltext\\'02\\'00.;}}}}{\\*\\themedata 504b0304}{\\*\\latentstyles{\\lsdlockedexcept "
       "Normal;}}{\\listtext\\pard\\plain 1.\\tab}First\\par{\\listtext 2.\\tab}Second\\par}",
       "First\r\nSecond"},
      {"a picture in both forms",
       "{\\rtf1 a{\\*\\shppict{\\pict\\pngblip 89504e47}}{\\nonshppict{\\pict\\wmetafile8 0100}}b}",
       "ab"},
      {"an object with its picture",
       "{\\rtf1 a{\\object\\objemb{\\*\\objdata 01}{\\result{\\pict "
       "01}}}b}",
       "ab"},
      {"a field, of which the result shows",
       "{\\rtf1 see {\\field{\\*\\fldinst HYPERLINK \"http://a.example\"}{\\fldrslt{\\ul here}}}!}",
       "see here!"},
      {"a field without a star", "{\\rtf1{\\field{\\fldinst DATE}{\\fldrslt 2 March}}}", "2 March"},
      {"a table",
       "{\\rtf1\\trowd\\cellx10\\intbl a\\cell b\\cell\\row c\\cell d\\cell\\row\\pard e}",
       "a\tb\t\r\nc\td\t\r\ne"},
      {"a mail program",
       "{\\rtf1\\ansi\\fromtext \\deff0{\\fonttbl\r\n{\\f0\\fswiss Arial;}}\r\n"
       "\\uc1\\pard\\plain\\deftab360 \\f0\\fs20 Hi,\\par\r\n> old\\line new\\par\r\n}",
       "Hi,\r\n> old\r\nnew"},
      {"quotes, dashes, bullets",
       "{\\rtf1\\ldblquote a\\rdblquote\\lquote b\\rquote\\endash\\emdash\\bullet}",
       "\x93"
       "a\x94\x91"
       "b\x92\x96\x97\x95"},
      {"blanks behind control words", "{\\rtf1\\b bold\\b0  two\\i  x}", "bold two x"},
      {"symbols", "{\\rtf1 a\\~b\\-c\\_d\\{\\}\\\\\\|\\:e}",
       "a\xA0"
       "b\xAD"
       "c-d{}\\e"},
      {"bytes by number", "{\\rtf1 Caf\\'e9 \\'C9\\'3}", "Caf\xE9 \xC9\x03"},
      {"bytes that are no number", "{\\rtf1 a\\'zz}", "azz"},
      {"bytes as they are", "{\\rtf1\\mac Caf\xE9}", "Caf\xE9"},
      {"line ends that are none, and tabs", "{\\rtf1 a\r\nb\nc\td}", "abc\td"},
      {"line ends behind a backslash", "{\\rtf1 a\\\r\nb\\\nc\\\td}", "a\r\nb\r\nc\td"},
      {"characters by number", "{\\rtf1\\u233?\\u8364?\\u8217'\\u-10179?\\u-8704?}",
       "\xE9\x80\x92??"},
      {"one that the code page lacks", "{\\rtf1\\u1044D}", "?"},
      {"fallbacks of several characters",
       "{\\rtf1\\uc2\\u233 xy{\\uc0\\u233 z}\\u233\\'41\\'42c\\uc1\\u233\\b d}",
       "\xE9\xE9z\xE9"
       "c\xE9"
       "d"},
      {"fallbacks end with their group", "{\\rtf1{\\uc3\\u233 a}b\\u233{c}d}",
       "\xE9"
       "b\xE9"
       "cd"},
      {"data within a fallback, with braces", "{\\rtf1\\u233\\bin3 }{\\x}", "\xE9x"},
      {"data with braces", "{\\rtf1 a{\\pict\\bin5 }}}\\{b}c}", "ac"},
      {"data without a size, and of none", "{\\rtf1 a\\bin b\\bin0 c\\bin-5 d}", "abcd"},
      {"more data than there are", "{\\rtf1 a\\bin2147483647 b}", "a"},
      {"nested tables",
       "{\\rtf1 a\\nestcell{\\*\\nesttableprops\\trowd\\nestrow}{\\nonesttables\\par}b\\cell\\row "
       "c}",
       "a\t\r\nb\t\r\nc"},
      {"bullets of an older control",
       "{\\rtf1{\\pntext\\f1\\'B7\\tab}{\\*\\pn\\pnlvlblt{\\pntxta .}{\\pntxtb "
       "(}}one\\par{\\pntext "
       "2\\tab}two}",
       "one\r\ntwo"},
      {"index entries, headers, columns",
       "{\\rtf1{\\headerl a}{\\headerr b}{\\headerf c}{\\footerl d}{\\footerr e}{\\footerf "
       "f}x{\\xe "
       "g}{\\tc h}\\column y\\emspace\\enspace\\qmspace z}",
       "x\r\ny   z"},
      {"units above the signed ones", "{\\rtf1\\u65533?\\u8364?}", "?\x80"},
      {"hidden text", "{\\rtf1 a\\v b\\par c\\v0 d{\\v e}f\\v g\\plain h}", "adfh"},
      {"nested groups", "{\\rtf1{{{a}}{b{c}}}d}", "abcd"},
      {"unknown destinations within known ones", "{\\rtf1{\\*\\x{\\*\\y a}b{c}}d{\\unknown e}}",
       "de"},
      {"a star without a word", "{\\rtf1{\\*a}{\\*\\~\\b x}b\\*\\x c}", "a\xA0xb"},
      {"a star before a word that is known", "{\\rtf1 a{\\*\\tab b}{\\*\\xe c}}", "a\tb"},
      {"a header that is the rest of the document", "{\\rtf1 a\\header b}", "a"},
      {"text behind its end", "{\\rtf1 a}b{c}", "a"},
      {"cut in a word", "{\\rtf1 a\\pa", "a"},
      {"cut in a group", "{\\rtf1 a\\par b{\\i c", "a\r\nbc"},
      {"cut behind a backslash", "{\\rtf1 a\\", "a"},
      {"cut in a byte", "{\\rtf1 a\\'", "a"},
      {"numbers beyond any", "{\\rtf1\\u99999999999?\\fs-99999999999 a}",
       "\x3F"
       "a"},
      {"letter case", "{\\rtf1 a\\PAR b\\Tab c}", "abc"},
      {"nothing", "{\\rtf1}", ""},
      {"a zero byte", std::string("{\\rtf1 a\0b}", 11), "a"},
      {"a zero by number", "{\\rtf1 a\\'00b}", "a"},
      {"no rich text", "plain {text}\\par\r\n", "plain {text}\\par\r\n"},
      {"no text at all", "", ""},
      {"nearly none", "{\\rt", "{\\rt"},
  };
  for (const auto& each : cases) EXPECT_EQ(Plain(each.rich), each.plain) << each.what;
}

TEST(RichTextTest, DocumentOfATextInAFont) {
  EXPECT_EQ(Rich("a{\\}\t\xE9\x01\x7F\r\nb"),
            "{\\rtf1\\ansi\\ansicpg1252\\deff0{\\fonttbl{\\f0\\fnil\\fcharset0 Courier New;}}\r\n"
            "\\uc1\\pard\\plain\\f0\\fs24 a\\{\\\\\\}\\tab \\'e9\\'01\\'7f\\par\r\nb\\par\r\n}");
  const std::string odd = Rich("", {"", 20, 134});
  EXPECT_NE(odd.find("\\fcharset134 Arial;}"), std::string::npos) << odd;
  EXPECT_NE(Rich("", {"a;{\xE9", 20, 0}).find(" a\\{\\'e9;}}"), std::string::npos);
  EXPECT_EQ(Plain(Rich("x", {"a}b\\c;d{", 20, 0})), "x");
}

TEST(RichTextTest, EveryTextComesBack) {
  std::string all;
  for (int byte = 1; byte < 256; ++byte) {
    if (byte != '\r' && byte != '\n') all += static_cast<char>(byte);
  }
  std::string twice = all;
  twice.append("\r\n").append(all);
  for (const std::string& text :
       {all, twice, std::string(), std::string("\r\n"), std::string("a\r\n"),
        std::string("a\r\n\r\nb\r\n\r\n"), std::string(" a b "), std::string("\\par{\\rtf1")}) {
    EXPECT_EQ(Plain(Rich(text)), text);
    EXPECT_EQ(Rich(text).find('\0'), std::string::npos);
  }
  EXPECT_EQ(Plain(Rich("a\rb\nc\n\rd")), "a\r\nb\r\nc\r\n\r\nd") << "each line end is one";
  EXPECT_EQ(Plain(Rich(std::string("a\0b", 3))), "a");
}

TEST(RichTextTest, ADocumentAboveTheLimitIsRefused) {
  pw::PortableRichText richText;
  const std::size_t size = Rich("abc").size();
  const pw::RichTextFont font{"Courier New", 24, 0};
  EXPECT_TRUE(richText.FromPlain("abc", font, size));
  EXPECT_FALSE(richText.FromPlain("abc", font, size - 1));
  EXPECT_FALSE(richText.FromPlain(std::string(1000, 'a'), font, 10));
}

// Each takes a time and a memory that grow with the document alone.
TEST(RichTextTest, HostileDocuments) {
  constexpr std::size_t kMany = 1'000'000;
  const std::string begin = "{\\rtf1 a";
  EXPECT_EQ(Plain(begin + std::string(kMany, '{') + "b"), "ab");
  EXPECT_EQ(Plain(begin + std::string(kMany, '{') + std::string(kMany, '}') + "b"), "ab");
  EXPECT_EQ(Plain(begin + "{\\pict" + std::string(kMany, '{') + std::string(kMany, '}') + "}b"),
            "ab");
  std::string words;
  for (std::size_t i = 0; i < kMany / 8; ++i) words += "\\uc9\\u63";
  EXPECT_EQ(Plain(begin + words).size(), 1 + kMany / 40) << "nine words stand behind each";
  const std::string document = Rich("a{\\}\t\r\nb");
  const std::string text = Plain(document);
  std::size_t before = 0;  // a longer beginning never shows less
  for (std::size_t size = 6; size <= document.size(); ++size) {
    const std::string shown = Plain(document.substr(0, size));
    EXPECT_EQ(shown, text.substr(0, shown.size())) << size;
    EXPECT_GE(shown.size(), before) << size;
    before = shown.size();
  }
}

}  // namespace
