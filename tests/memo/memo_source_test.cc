#include "framework/memo_record.h"
#include "tests/support/binder_builder.h"
#include "tests/support/source_fixture.h"

namespace pw::test {
namespace {

constexpr const char* kStem = "C:\\Data\\Notes";

// The notes of the section "Work" of TwoSections, at 5 February 2000.
class MemoSourceTest : public SourceTest {
 protected:
  MemoSourceTest() : SourceTest("memo", 3) {
    platform.clock.now = 949754096;
    platform.clock.localOffset = -5 * 3600;
    Put(TwoSections());
    category.Location = "C:\\Data\\Notes;Work";
  }

  void Put(const BinderBytes& bytes) { PutBinder(platform.files, kStem, bytes); }
  void Reopen() {
    EXPECT_EQ(source->CloseSource(), 0);
    MakeSource();
    EXPECT_EQ(source->Open(0), 0);
  }
  static PWRecord Memo(const std::string& subject, const std::string& body) {
    PWRecord record;
    PWMemoRecord memo(&record);
    memo.Subject(subject.c_str(), PWRecord::kWholeText);
    memo.Body(body.c_str(), PWRecord::kWholeText);
    return record;
  }
  PWRESULT Add(const std::string& subject, const std::string& body = "body") {
    PWRecord record = Memo(subject, body);
    return source->AddRecord(record);
  }
  std::string Subject() {
    PWRecord record;
    return source->ReadRecord(&record) == 0 ? PWMemoRecord(&record).Subject().Str() : "none";
  }
};

TEST_F(MemoSourceTest, ReadsTheNotesOfItsSection) {
  ASSERT_EQ(source->Open(0), 0);
  ASSERT_EQ(source->FirstRecord(), 0);
  EXPECT_EQ(source->RecordTimeStamp(), PWDateTimeStamp(1998, 7, 9, 11, 0, 1));
  EXPECT_EQ(source->RecordCRC(), 0U);
  PWRecord record;
  ASSERT_EQ(source->ReadRecord(&record), 0);
  EXPECT_EQ(PWMemoRecord(&record).Subject().Str(), "Plan");
  EXPECT_EQ(PWMemoRecord(&record).Body().Str(), "line\r\nline");
  ASSERT_EQ(source->NextRecord(), 0);
  EXPECT_EQ(Subject(), "plain subject");
  EXPECT_EQ(source->NextRecord(), 1);
  EXPECT_EQ(source->RecordTimeStamp(), PWDateTimeStamp(1998, 7, 9, 11, 0, 1)) << "as it was";
  EXPECT_EQ(source->UpdateRecord(record), 1);

  category.Location = "C:\\Data\\Notes;Caf\xE9";
  Reopen();
  EXPECT_EQ(Ids(), Lines{"-3"}) << "behind those of another section";

  // As it may be in memory, and in a file that another program wrote.
  BinderBytes mixed = TwoSections();
  std::swap(mixed.notes[1], mixed.notes[2]);
  Put(mixed);
  category.Location = "C:\\Data\\Notes;Work";
  MakeSource();
  ASSERT_EQ(source->Open(0), 0);
  EXPECT_EQ(Ids(), (Lines{"900000000", "900000005"}));
}

TEST_F(MemoSourceTest, TheCursorFollowsWhatIsChanged) {
  ASSERT_EQ(source->Open(0), 0);
  EXPECT_EQ(Add("new"), 0);
  EXPECT_EQ(Id(), "949754096");
  PWRecord changed = Memo("changed", "a\nb");
  EXPECT_EQ(source->UpdateRecord(changed), 0);
  EXPECT_EQ(source->FindRecord("900000000"), 0);
  EXPECT_EQ(source->DeleteRecord(), 0);
  EXPECT_EQ(Subject(), "plain subject") << "the cursor stays";
  Reopen();
  EXPECT_EQ(Ids(), (Lines{"900000005", "949754096"}));
  EXPECT_EQ(source->FindRecord("949754096 and more"), 0);
  PWRecord record;
  source->ReadRecord(&record);
  EXPECT_EQ(PWMemoRecord(&record).Body().Str(), "a\r\nb");
}

TEST_F(MemoSourceTest, ASearchThatFindsNothingLeavesTheCursorAtTheBindersStart) {
  category.Location = "C:\\Data\\Notes;Caf\xE9";
  ASSERT_EQ(source->Open(0), 0);
  for (const char* id : {"900000000", "", "x", "-4"}) EXPECT_EQ(source->FindRecord(id), 1) << id;
  EXPECT_EQ(Subject(), "Plan") << "a note of another section";
  EXPECT_EQ(source->DeleteRecord(), 0);
  EXPECT_EQ(source->FindRecord("7"), 1);
  EXPECT_EQ(source->DeleteRecord(), 0);
  EXPECT_EQ(source->RecordCount(), 0U) << "they counted as if they were its own";
  EXPECT_EQ(source->FindRecord("-3"), 0);
}

TEST_F(MemoSourceTest, AnEmptySectionHasNoFirst) {
  BinderBytes bytes = TwoSections();
  bytes.sections.push_back({"Empty", 9});
  Put(bytes);
  category.Location = "C:\\Data\\Notes;Empty";
  ASSERT_EQ(source->Open(0), 0);
  EXPECT_EQ(source->FirstRecord(), 1);
  EXPECT_EQ(source->RecordCount(), 0U);
  EXPECT_EQ(Add("a"), 0);
  EXPECT_EQ(Add("b"), 0);
  EXPECT_EQ(Ids(), (Lines{"949754096", "949754097"}));
  PWRecord tooLarge = Memo("large", std::string(4'024'000, 'x'));
  EXPECT_EQ(source->AddRecord(tooLarge), 1);
  EXPECT_EQ(source->UpdateRecord(tooLarge), 1);
}

TEST_F(MemoSourceTest, WhatIsMissingIsNoSource) {
  platform.windows.Add("Wingmate_95");
  for (const char* extension : {".WMWrite", ".WMNoteHeader", ".WMContent"}) {
    Put(TwoSections());
    platform.files.Delete(std::string(kStem) + extension);
    EXPECT_EQ(source->Open(0), 7) << extension;
  }
  Put(TwoSections());
  for (const char* location : {"", "Notes", "C:\\Data\\Notes", "C:\\Data\\Other;Work"}) {
    category.Location = location;
    EXPECT_EQ(source->Open(0), 7) << location;
  }
  EXPECT_EQ(Sent(), Steps{}) << "the organiser isn't asked";
  for (const char* location :
       {"C:\\Data\\Notes;", "C:\\Data\\Notes;work", "C:\\Data\\Notes;Work;"}) {
    category.Location = location;
    platform.windows.sent.clear();
    EXPECT_EQ(source->Open(0), 1) << location;
    EXPECT_EQ(Sent(), (Steps{0, 1, 3})) << "there is no such section";
  }
}

}  // namespace
}  // namespace pw::test
