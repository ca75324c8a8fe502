#include "tests/memo/memo_fixture.h"

namespace pw::test {
namespace {

class BinderLoadTest : public BinderTest {};

// Every file must come back as it was, but for what the change itself is about.
TEST_F(BinderLoadTest, SavesWhatItLoaded) {
  BinderBytes empty;
  empty.sections = {{"Only", 3, 0}};
  BinderBytes noName;
  noName.sections = {{"", 65535, 0}, {"x", 0, 1}, {"full", 1, 1}};
  noName.notes = {{1, 0, "", ""}, {1, 1, std::string(5000, 's'), std::string(2 << 20, 'b'), 7}};
  for (const BinderBytes& bytes : {TwoSections(), empty, noName}) {
    Put(bytes);
    ASSERT_EQ(Open(), 0);
    EXPECT_TRUE(binder->IsValid());
    EXPECT_EQ(binder->Save(), -1) << "nothing was changed";
    ASSERT_EQ(binder->AddSection("new"), 0);
    EXPECT_EQ(binder->Save(), 0);
    BinderBytes expected = bytes;
    expected.sections.push_back(
        {"new", static_cast<std::uint16_t>(bytes.sections.back().id + 1), 0});
    ExpectFiles(expected);
    EXPECT_EQ(binder->Save(), 0) << "again";
    ExpectFiles(expected);
  }
}

TEST_F(BinderLoadTest, GivesNotesAsPlainText) {
  Put(TwoSections());
  ASSERT_EQ(Open(), 0);
  EXPECT_EQ(Subjects(), "Plan|plain subject|Trip|");
  EXPECT_EQ(binder->Note(0).BodyText(), "line\r\nline");
  EXPECT_EQ(binder->Note(1).BodyText(), "");
  EXPECT_EQ(binder->Note(2).BodyText(), "pack") << "data aren't text, whatever bytes they have";
  EXPECT_EQ(binder->FindSection("Work"), std::uint16_t{0});
  EXPECT_EQ(binder->FindSection("Caf\xE9"), std::uint16_t{7});
  EXPECT_EQ(binder->FindSection("work"), std::nullopt);
}

// The last that is wrong stands, and all files are tried.
TEST_F(BinderLoadTest, WhatIsWrongWithTheFiles) {
  const std::string none = "none";
  const BinderBytes good = TwoSections();
  const std::string sections = good.Sections();
  const std::string headers = good.Headers();
  const struct {
    std::string sections, headers, contents;
    std::int32_t result;
  } cases[] = {
      {sections, headers, "", 0},
      {none, headers, "", 0x271B},
      {"", headers, "", 0x2715},
      {sections, none, "", 0x271C},
      {sections, "", "", 0x2716},
      {none, "", "", 0x2716},
      {"", none, "", 0x271C},
      {sections, headers, none, 0x271D},
      {none, none, none, 0x271D},
      {"", "", "", 0x2716},
      {sections.substr(0, sections.size() - 1), headers, "", -1},
      {sections, headers.substr(0, headers.size() - 1), "", -1},
  };
  for (const auto& each : cases) {
    binder.reset();
    PutFiles(each.sections, each.headers, each.contents);
    const char* extensions[] = {".WMWrite", ".WMNoteHeader", ".WMContent"};
    const std::string* texts[] = {&each.sections, &each.headers, &each.contents};
    for (int i = 0; i < 3; ++i) {
      if (*texts[i] == none) platform.files.Delete(std::string(kStem) + extensions[i]);
    }
    EXPECT_EQ(Open(), each.result);
    EXPECT_EQ(binder->IsValid(), each.result == 0);
    if (each.result == 0) continue;
    EXPECT_EQ(binder->AddNote("s", "b", 0), -1);
    EXPECT_EQ(binder->UpdateNote(0, "s", "b"), -1);
    EXPECT_EQ(binder->DeleteNote(0), -1);
    binder->AddSection("new");
    EXPECT_EQ(binder->Save(), -1);
    for (int i = 0; i < 3; ++i) EXPECT_EQ(Get(extensions[i]), *texts[i]);
  }
}

TEST_F(BinderLoadTest, ANoteOfNoSectionTakesAllBehindItAlong) {
  BinderBytes bytes = TwoSections();
  bytes.notes[1].sectionId = 99;
  Put(bytes);
  ASSERT_EQ(Open(), 0);
  EXPECT_EQ(binder->NoteCount(), 3U);
  EXPECT_EQ(binder->UpdateNote(0, "Plan", "changed"), 0);
  EXPECT_EQ(binder->Save(), 0);
  EXPECT_EQ(Get(".WMNoteHeader").size(), 10U + 32U);
  EXPECT_EQ(Get(".WMNoteHeader").substr(6, 4), Word(3, 4)) << "the count stays";
  EXPECT_EQ(Open(), -1);
}

TEST_F(BinderLoadTest, SectionsOfOneIdShareTheNotesByWhereTheyCome) {
  BinderBytes bytes = TwoSections();
  bytes.sections.push_back({"Work", 0, 7});
  bytes.notes.push_back({5, 0, "late", ""});
  Put(bytes);
  ASSERT_EQ(Open(), 0);
  binder->DeleteNote(1);
  EXPECT_EQ(binder->Save(), 0);
  bytes.sections[0].noteCount = 1;
  bytes.sections[2].noteCount = 1;
  bytes.notes.erase(bytes.notes.begin() + 1);
  ExpectFiles(bytes);
}

// The section file's rest is cut, and so is what no note names in the other two.
TEST_F(BinderLoadTest, WhatStandsBehindTheLastIsGone) {
  const BinderBytes bytes = TwoSections();
  PutFiles(bytes.Sections() + "rest", bytes.Headers() + "rest", bytes.Contents() + "rest");
  ASSERT_EQ(Open(), 0);
  binder->AddSection("new");
  EXPECT_EQ(binder->Save(), 0);
  BinderBytes expected = bytes;
  expected.sections.push_back({"new", 8, 0});
  ExpectFiles(expected);
}

// All of them have the whole file of contents as their body.
TEST_F(BinderLoadTest, NotesThatShareTheirTextsTakeNoRoomOfTheirOwn) {
  constexpr int kNotes = 5000;
  const std::string shared(1 << 20, 'x');
  NoteBytes note;
  note.body = shared;
  std::string many = "WMW300" + Word(kNotes, 4);
  for (int i = 0; i < kNotes; ++i) many += note.Header(0);
  PutFiles(TwoSections().Sections(), many, shared);
  ASSERT_EQ(Open(), 0);
  EXPECT_EQ(binder->Note(kNotes - 1).BodyText(), shared);
  binder->AddSection("new");
  EXPECT_EQ(binder->Save(), -1) << "its contents would outgrow 32 bits";
  EXPECT_EQ(Get(".WMContent"), shared);
}

}  // namespace
}  // namespace pw::test
