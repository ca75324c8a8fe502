#include <gtest/gtest.h>

#include "memo/format.h"
#include "memo/section_groups.h"
#include "tests/support/bytes.h"

namespace pw::memo {
namespace {

using test::Word;

TEST(BinderFormatTest, ASection) {
  std::string bytes = "Ideas" + std::string("\0lder name", 10) + std::string(10, '#');
  bytes += std::string("\x02\x01\x00\x00", 4);  // notes
  bytes += "\x91";                              // flag
  bytes += "\x34\x12";                          // id
  ASSERT_EQ(bytes.size(), kSectionSize);
  ByteReader in(bytes);
  const Section section = DecodeSection(in);
  EXPECT_FALSE(in.Short());
  EXPECT_EQ(section.name, "Ideas");
  EXPECT_EQ(section.noteCount, 0x102);
  EXPECT_EQ(section.flag, 0x91);
  EXPECT_EQ(section.id, 0x1234);
  ByteWriter out;
  EncodeSection(out, section);
  EXPECT_EQ(out.Written(), "Ideas" + std::string(20, '\0') + bytes.substr(25));
}

TEST(BinderFormatTest, NamesAreReadTo25BytesAndWrittenTo24) {
  for (const std::size_t size : {24U, 25U, 26U}) {
    Section section;
    section.name = std::string(size, 'n');
    const std::string file = EncodeSections({section});
    EXPECT_EQ(file.substr(2, 25), std::string(24, 'n') + '\0');
    std::string filled = file;
    filled.replace(2, 25, std::string(25, 'n'));
    EXPECT_EQ(DecodeSections(filled)->front().name, std::string(25, 'n'));
  }
  EXPECT_EQ(EncodeSections({}), "") << "without any section nothing is written";
}

TEST(BinderFormatTest, ANoteHeader) {
  const std::string bytes =
      "\x01\x02\x34\x12\x78\x56\x34\xF2"                      // carried, section, id
      + std::string("\x0A\x00\x00\x80\x05\x00\x00\x00", 8)    // offset and size of the subject
      + std::string("\x06\x01\x00\x00\xFE\xFF\xFF\xFF", 8) +  // size of the body, last change
      "unknown8";
  ByteReader in(bytes);
  const NoteHeader header = DecodeNoteHeader(in);
  EXPECT_EQ(in.Remaining(), 0U);
  EXPECT_EQ(header.first, 1);
  EXPECT_EQ(header.second, 2);
  EXPECT_EQ(header.sectionId, 0x1234);
  EXPECT_EQ(header.id, static_cast<std::int32_t>(0xF2345678));
  EXPECT_EQ(header.subjectOffset, 0x8000000AU);
  EXPECT_EQ(header.subjectSize, 5U);
  EXPECT_EQ(header.bodySize, 0x106U);
  EXPECT_EQ(header.lastChange, -2);
  ByteWriter out;
  EncodeNoteHeader(out, header);
  EXPECT_EQ(out.Written(), bytes);
}

TEST(BinderFormatTest, CountsAreThoseOfWhatIsThere) {
  const std::string section(kSectionSize, 's');
  EXPECT_FALSE(DecodeSections(""));
  EXPECT_FALSE(DecodeSections("\x01"));
  EXPECT_FALSE(DecodeSections(Word(0, 2) + section));
  EXPECT_FALSE(DecodeSections(Word(-1, 2) + section));
  EXPECT_FALSE(DecodeSections(Word(2, 2) + section));
  EXPECT_FALSE(DecodeSections(Word(0x7FFF, 2) + section));
  EXPECT_EQ(DecodeSections(Word(1, 2) + section + section)->size(), 1U);

  const std::string header(kNoteHeaderSize, 'h');
  EXPECT_FALSE(DecodeNoteHeaders("WMW300\1\0\0"));
  EXPECT_FALSE(DecodeNoteHeaders("WMW300" + Word(1, 4)));
  EXPECT_FALSE(DecodeNoteHeaders("WMW300" + Word(2, 4) + header + header.substr(1)));
  EXPECT_FALSE(DecodeNoteHeaders("WMW300" + Word(0x7FFFFFFF, 4) + header));
  EXPECT_EQ(DecodeNoteHeaders("WMW300" + Word(-1, 4) + header)->size(), 0U);
  EXPECT_EQ(DecodeNoteHeaders("magic?" + Word(1, 4) + header + "more")->size(), 1U);
}

TEST(BinderFormatTest, TextsAreWhatTheFileHasOfThem) {
  const struct {
    std::uint32_t offset, subjectSize, bodySize;
    const char* subject;
    const char* body;
  } cases[] = {
      {0, 3, 4, "abc", "defg"},    {2, 0, 3, "", "cde"},
      {5, 3, 9, "fgh", "i"},       {5, 99, 9, "fghi", ""},
      {9, 1, 1, "", ""},           {UINT32_MAX, UINT32_MAX, UINT32_MAX, "", ""},
      {8, UINT32_MAX, 5, "i", ""},
  };
  for (const auto& each : cases) {
    NoteHeader header;
    header.subjectOffset = each.offset;
    header.subjectSize = each.subjectSize;
    header.bodySize = each.bodySize;
    EXPECT_EQ(SubjectOf(header, "abcdefghi"), each.subject);
    EXPECT_EQ(BodyOf(header, "abcdefghi"), each.body);
  }
}

TEST(BinderFormatTest, NotesGoToTheirSections) {
  const struct {
    const char* what;
    std::vector<std::uint16_t> sections;
    std::vector<std::uint16_t> notes;
    SectionGroups groups;
  } cases[] = {
      {"none", {1, 2}, {}, {{}, {}}},
      {"mixed", {1, 2}, {2, 1, 2, 1}, {{1, 3}, {0, 2}}},
      {"one of no section ends it", {1, 2}, {2, 3, 1}, {{}, {0}}},
      {"one id twice: the first, as it is found again", {5, 5}, {5, 5}, {{0, 1}, {}}},
      {"behind a later section the second", {5, 6, 5}, {5, 6, 5, 5}, {{0}, {1}, {2, 3}}},
      {"and from the start again", {5, 6, 5, 7}, {6, 5, 7, 5}, {{3}, {0}, {1}, {2}}},
  };
  for (const auto& each : cases) {
    EXPECT_EQ(GroupBySection(each.sections, each.notes), each.groups) << each.what;
  }
}

}  // namespace
}  // namespace pw::memo
