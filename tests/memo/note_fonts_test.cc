#include <optional>

#include <gtest/gtest.h>

#include "memo/note.h"
#include "platform/testing/test_platform.h"

namespace {

constexpr const char* kKey = "SOFTWARE\\Gullwing\\PairWise Desktop\\Version 1\\Memo";

class NoteFontsTest : public testing::Test {
 protected:
  void PutFonts(const std::string& content, std::uint32_t contentSize, const std::string& subject,
                std::uint32_t subjectSize) {
    platform.registry.Set(kKey, "DefContentFont", pw::TextValue(content));
    platform.registry.Set(kKey, "DefContentSize", pw::NumberValue(contentSize));
    platform.registry.Set(kKey, "DefSubjectFont", pw::TextValue(subject));
    platform.registry.Set(kKey, "DefSubjectSize", pw::NumberValue(subjectSize));
  }

  // "charset name, half points" of the rich texts of a new note's subject and body.
  static std::string Written() {
    WMNote note;
    note.SetSubjectText("s");
    note.SetBodyText("b");
    return FontOf(note.Subject()) + "; " + FontOf(note.Body());
  }
  static std::string FontOf(std::string_view rich) {
    const std::size_t font = rich.find("\\fcharset") + 9;
    const std::size_t size = rich.find("\\fs") + 3;
    return std::string(rich.substr(font, rich.find(';', font) - font)) + ", " +
           std::string(rich.substr(size, rich.find(' ', size) - size));
  }

  pw::TestPlatform platform;
};

// A subject's name is its last one, as the organiser leaves it alone, or the writer's own.
TEST_F(NoteFontsTest, AreThoseOfTheRegistryOrFallBackTogether) {
  EXPECT_EQ(Written(), "0 Arial, 20; 0 Arial, 20");
  const std::string longest(255, 'c');
  const struct {
    const char* what;
    std::string content;
    std::uint32_t contentSize;
    const char* subject;
    std::uint32_t subjectSize;
    std::string written;
  } cases[] = {
      {"all is there", "Courier New", 12, "Verdana", 14, "0 Verdana, 29; 0 Courier New, 24"},
      {"sizes that no font has", "Courier", 0, "V", 0xFFFFFFFF, "0 V, 20; 0 Courier, 20"},
      {"the largest name", longest, 10, "V", 10, "0 V, 20; 0 " + longest + ", 20"},
      {"of one length", "Courier", 8, "Verdana", 9, "0 Verdana, 18; 0 Courier, 17"},
      {"the subject's name is longer", "Courier", 8, "Verdana 2", 9, "0 Verdana, 20; 0 Arial, 20"},
      {"no names", "", 12, "", 12, "0 Verdana, 20; 0 Arial, 20"},
      {"no subject's name", "Courier", 12, "", 12, "0 Verdana, 20; 0 Arial, 20"},
      {"beyond the largest name", longest + "c", 12, "Verdana", 12, "0 Verdana, 20; 0 Arial, 20"},
  };
  for (const auto& each : cases) {
    PutFonts(each.content, each.contentSize, each.subject, each.subjectSize);
    EXPECT_EQ(Written(), each.written) << each.what;
  }
  PutFonts("Courier", 12, "Verdana", 12);
  platform.registry.Set(kKey, "DefSubjectSize", pw::TextValue("12"));
  EXPECT_EQ(Written(), "0 Verdana, 20; 0 Arial, 20") << "a size that is no number";
}

TEST_F(NoteFontsTest, AreChosenByTheFirstNoteForAll) {
  auto first = std::make_optional<WMNote>();
  PutFonts("Courier", 12, "Verdana", 12);
  EXPECT_EQ(Written(), "0 Arial, 20; 0 Arial, 20");
  {
    const WMNote copy = *first;
    first.reset();
    EXPECT_EQ(Written(), "0 Arial, 20; 0 Arial, 20") << "a note is left";
  }
  EXPECT_EQ(Written(), "0 Verdana, 24; 0 Courier, 24");
}

}  // namespace
