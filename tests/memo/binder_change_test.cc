#include "tests/memo/memo_fixture.h"

namespace pw::test {
namespace {

constexpr std::int32_t kNow = 950000000;

class BinderChangeTest : public BinderTest {
 protected:
  BinderChangeTest() {
    platform.clock.now = kNow;
    Put(TwoSections());
    Open();
  }
  void Reopen() {
    EXPECT_EQ(binder->Save(), 0);
    EXPECT_EQ(Open(), 0);
  }
};

TEST_F(BinderChangeTest, NewNotesStandAtTheEndAndAreFiledBySection) {
  ASSERT_EQ(binder->AddNote("a", "first\r\nsecond", 0), 0);
  ASSERT_EQ(binder->AddNote("b", "", 7), 0);
  EXPECT_EQ(Subjects(), "Plan|plain subject|Trip|a|b|");
  Reopen();
  EXPECT_EQ(Subjects(), "Plan|plain subject|a|Trip|b|");
  EXPECT_EQ(binder->Note(2).BodyText(), "first\r\nsecond");
  EXPECT_EQ(binder->Sections()[0].noteCount, 3);
  EXPECT_EQ(binder->Sections()[1].noteCount, 2);
  // The bytes of a new header, but for where its texts stand.
  const std::string header = Get(".WMNoteHeader").substr(10 + 2 * 32, 32);
  EXPECT_EQ(header.substr(0, 8), Word(0, 4) + Word(kNow, 4));
  EXPECT_EQ(header.substr(20), Word(kNow, 4) + std::string(8, '\0'));
}

TEST_F(BinderChangeTest, IdsAreThePresentOrOneMoreThanTheHighest) {
  const auto idOfNew = [&] {
    EXPECT_EQ(binder->AddNote("s", "b", 0), 0);
    return binder->Note(binder->NoteCount() - 1).header.id;
  };
  EXPECT_EQ(idOfNew(), kNow);
  EXPECT_EQ(idOfNew(), kNow + 1);
  platform.clock.now = kNow + 1;
  EXPECT_EQ(idOfNew(), kNow + 2) << "ahead of the clock";
  EXPECT_EQ(binder->Note(binder->NoteCount() - 1).header.lastChange, kNow + 1);
  platform.clock.now = 1;
  Reopen();
  EXPECT_EQ(idOfNew(), kNow + 3) << "the file's highest counts";

  BinderBytes last = TwoSections();
  last.notes[2].id = INT32_MAX;
  Put(last);
  ASSERT_EQ(Open(), 0);
  EXPECT_EQ(idOfNew(), INT32_MIN) << "it turns over";
}

TEST_F(BinderChangeTest, AnUpdateRewritesItsNoteAlone) {
  ASSERT_EQ(binder->UpdateNote(0, "new", "text"), 0);
  EXPECT_EQ(binder->UpdateNote(3, "new", "text"), -1);
  Reopen();
  EXPECT_EQ(Subjects(), "new|plain subject|Trip|");
  const WMNote& changed = binder->Note(0);
  EXPECT_EQ(changed.header.id, 900000000);
  EXPECT_EQ(changed.header.first, 1);
  EXPECT_EQ(changed.header.second, 2);
  EXPECT_EQ(changed.header.lastChange, kNow);
  const BinderBytes before = TwoSections();
  EXPECT_EQ(binder->Note(1).Subject(), before.notes[1].subject);
  EXPECT_EQ(binder->Note(2).Body(), before.notes[2].body) << "rich text that nobody changed";
}

TEST_F(BinderChangeTest, NotesAreDeletedByIndex) {
  EXPECT_EQ(binder->DeleteNote(3), -1);
  ASSERT_EQ(binder->FindNote(-3, 7), 2U);
  EXPECT_EQ(binder->DeleteNote(0), 0);
  EXPECT_EQ(binder->FindNote(-3, 7), 1U);
  EXPECT_EQ(binder->FindNote(900000000, 0), std::nullopt);
  EXPECT_EQ(binder->FindNote(-3, 0), std::nullopt) << "it is in the other section";
  EXPECT_EQ(binder->DeleteNote(0), 0);
  EXPECT_EQ(binder->DeleteNote(0), 0);
  Reopen();
  EXPECT_EQ(binder->NoteCount(), 0U);
  EXPECT_EQ(Get(".WMContent"), "");
}

TEST_F(BinderChangeTest, SectionsCountOnFromTheLastUpToAThousand) {
  EXPECT_EQ(binder->AddSection(std::string(30, 'n')), 0);
  EXPECT_EQ(binder->Sections()[2].id, 8);
  EXPECT_EQ(binder->Sections()[2].noteCount, 1) << "until it is saved";
  EXPECT_EQ(binder->Sections()[2].flag, 0x90);
  EXPECT_TRUE(binder->FindSection(std::string(30, 'n'))) << "until then";
  Reopen();
  EXPECT_EQ(binder->Sections()[2].noteCount, 0);
  EXPECT_EQ(binder->Sections()[2].name, std::string(24, 'n'));
  while (binder->Sections().size() < 1000) ASSERT_EQ(binder->AddSection("s"), 0);
  EXPECT_EQ(binder->AddSection("s"), -1);

  WMBinder none;
  EXPECT_EQ(none.AddSection("first"), 0);
  EXPECT_EQ(none.Sections()[0].id, 1);
}

TEST_F(BinderChangeTest, ATextThatIsTooLargeChangesNothing) {
  const std::string tooLarge(4'024'000, 'x');
  const std::string large(4'000'000, 'x');
  EXPECT_EQ(binder->UpdateNote(0, "new", tooLarge), -1);
  EXPECT_EQ(binder->UpdateNote(0, tooLarge, "new"), -1);
  EXPECT_EQ(binder->AddNote("new", tooLarge, 0), -1);
  EXPECT_EQ(binder->Save(), -1) << "nothing was changed";
  EXPECT_EQ(Subjects(), "Plan|plain subject|Trip|");
  EXPECT_EQ(binder->UpdateNote(0, large, large), 0);
  EXPECT_EQ(binder->Note(0).BodyText(), large);
}

TEST_F(BinderChangeTest, WhatCannotBeWrittenIsNotNoticed) {
  binder->AddSection("new");
  platform.files.FailWritesAfter(12);
  EXPECT_EQ(binder->Save(), 0);
  platform.files.StopFailing();
  binder->Close();
  EXPECT_FALSE(binder->IsValid());
  EXPECT_EQ(binder->Save(), -1) << "its files are gone";
}

}  // namespace
}  // namespace pw::test
