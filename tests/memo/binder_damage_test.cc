#include "tests/memo/memo_fixture.h"
#include "tests/support/damage.h"

// Damaged binders: whatever stands in them, they load or fail, change and save as a whole.
namespace pw::test {
namespace {

class BinderDamageTest : public BinderTest {
 protected:
  // Loads, looks at every note, changes, saves and loads what was saved.
  void Exercise(const std::string& sections, const std::string& headers,
                const std::string& contents) {
    PutFiles(sections, headers, contents);
    if (Open() != 0) return;
    for (std::uint32_t i = 0; i < binder->NoteCount(); ++i) {
      const WMNote& note = binder->Note(i);
      note.SubjectText();
      note.BodyText();
      const auto found = binder->FindNote(note.header.id, note.header.sectionId);
      EXPECT_TRUE(found && *found <= i);
    }
    if (binder->NoteCount() > 2) binder->DeleteNote(2);
    EXPECT_EQ(binder->AddNote("new", "note", binder->Sections()[0].id), 0);
    const std::uint32_t count = binder->NoteCount();
    EXPECT_EQ(binder->Save(), 0);
    const bool isWhole = Get(".WMNoteHeader").size() == 10 + 32 * count;
    EXPECT_EQ(Open(), isWhole ? 0 : -1) << "without the notes of no section it is cut short";
    if (isWhole) {
      EXPECT_EQ(binder->NoteCount(), count);
    }
  }
  const BinderBytes bytes = TwoSections();
  const std::string sections = bytes.Sections();
  const std::string headers = bytes.Headers();
  const std::string contents = bytes.Contents();
};

TEST_F(BinderDamageTest, EachFileCutAtEveryLength) {
  ForEachCut(sections, [&](const std::string& cut) { Exercise(cut, headers, contents); });
  ForEachCut(headers, [&](const std::string& cut) { Exercise(sections, cut, contents); });
  ForEachCut(contents, [&](const std::string& cut) { Exercise(sections, headers, cut); });
}

TEST_F(BinderDamageTest, EveryByteFlipped) {
  ForEachFlip(sections, [&](const std::string& bad, auto) { Exercise(bad, headers, contents); });
  ForEachFlip(headers, [&](const std::string& bad, auto) { Exercise(sections, bad, contents); });
  ForEachFlip(contents, [&](const std::string& bad, auto) { Exercise(sections, headers, bad); });
}

// All of them have the whole file of contents as their body.
TEST_F(BinderDamageTest, NotesThatShareTheirTextsTakeNoRoomOfTheirOwn) {
  constexpr int kNotes = 5000;
  const std::string shared(1 << 20, 'x');
  NoteBytes note;
  note.body = shared;
  std::string many = "WMW300" + Word(kNotes, 4);
  for (int i = 0; i < kNotes; ++i) many += note.Header(0);
  PutFiles(sections, many, shared);
  ASSERT_EQ(Open(), 0);
  EXPECT_EQ(binder->Note(kNotes - 1).BodyText(), shared);
  binder->AddSection("new");
  EXPECT_EQ(binder->Save(), -1) << "its contents would outgrow 32 bits";
  EXPECT_EQ(Get(".WMContent"), shared);
}

}  // namespace
}  // namespace pw::test
