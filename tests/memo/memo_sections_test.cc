#include "memo/memo_sections.h"

#include "memo/open_section.h"
#include "tests/memo/memo_fixture.h"
#include "tests/support/busy_organiser.h"
#include "tests/support/source_fixture.h"

namespace pw::test {
namespace {

class MemoSectionsTest : public BinderTest {};

TEST_F(MemoSectionsTest, ABinderIsMadeWithItsFirstSection) {
  platform.files.Put(kStem + std::string(".WMContent"), "left over");
  EXPECT_EQ(CreateMemoSection(kStem, "Work"), 0);
  const SectionBytes section{"Work", 0, 1};
  EXPECT_EQ(Get(".WMWrite"), Word(1, 2) + section.Build());
  EXPECT_EQ(Get(".WMNoteHeader"), "WMW300" + Word(0, 4));
  EXPECT_EQ(Get(".WMContent"), "");
  EXPECT_EQ(Open(), 0);
}

TEST_F(MemoSectionsTest, ABinderThatIsThereGetsAnotherSection) {
  BinderBytes bytes = TwoSections();
  Put(bytes);
  EXPECT_EQ(CreateMemoSection(kStem, "Work"), 1) << "it is there";
  ExpectFiles(bytes);
  EXPECT_EQ(CreateMemoSection(kStem, "work"), 0);
  bytes.sections.push_back({"work", 8, 0});
  ExpectFiles(bytes);
  // What is longer than a name can be isn't found again.
  const std::string name(25, 'n');
  EXPECT_EQ(CreateMemoSection(kStem, name), 0);
  EXPECT_EQ(CreateMemoSection(kStem, name), 0);
  ASSERT_EQ(Open(), 0);
  EXPECT_EQ(binder->Sections().size(), 5U);
}

TEST_F(MemoSectionsTest, WhatCannotBeMadeOrOpened) {
  platform.files.FailOpen(kStem + std::string(".WMNoteHeader"));
  EXPECT_EQ(CreateMemoSection(kStem, "Work"), 1);
  EXPECT_EQ(Get(".WMContent"), "none") << "it ends there";
  platform.files.StopFailing();
  PutFiles("", "WMW300", "kept");
  EXPECT_EQ(CreateMemoSection(kStem, "Work"), 0) << "though nothing is done";
  EXPECT_EQ(Get(".WMWrite"), "");
  EXPECT_EQ(Get(".WMContent"), "kept");
}

TEST_F(MemoSectionsTest, ClearingTakesTheNotesOfASectionAlone) {
  platform.windows.Add("Wingmate_95");
  BinderBytes bytes = TwoSections();
  bytes.notes.push_back({8, 0, "x", "y"});
  Put(bytes);
  EXPECT_EQ(ClearMemoSection("C:\\Data\\Notes;Nowhere"), 0);
  ExpectFiles(bytes);
  EXPECT_EQ(ClearMemoSection("C:\\Data\\Notes;Work"), 0);
  EXPECT_EQ(SentSteps(platform), (Steps{0, 1, 3, 0, 1, 3})) << "as if nothing were changed";
  bytes.notes = {bytes.notes[2]};
  bytes.sections[0].noteCount = 0;
  ExpectFiles(bytes);
  OpenSectionId() = 0;
  ClearMemoSection("C:\\Data\\Notes;Caf\xE9");
  EXPECT_EQ(OpenSectionId(), 7) << "as if it had been opened";
}

TEST_F(MemoSectionsTest, ClearingWhatCannotBeOpenedIsNoFailureButABusyOrganiserIs) {
  EXPECT_EQ(ClearMemoSection("C:\\Data\\Notes;Work"), 0);
  Put(TwoSections());
  MakeOrganiserBusy(platform);
  EXPECT_EQ(ClearMemoSection("C:\\Data\\Notes;Work"), 1);
  ExpectFiles(TwoSections());
}

}  // namespace
}  // namespace pw::test
