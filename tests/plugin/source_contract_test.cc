#include <iterator>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "framework/event_record.h"
#include "framework/memo_record.h"
#include "framework/task_record.h"
#include "framework/timezone_record.h"
#include "tests/support/binder_builder.h"
#include "tests/support/busy_organiser.h"
#include "tests/support/calltask_builder.h"
#include "tests/support/card_file_builder.h"
#include "tests/support/clock_file_builder.h"
#include "tests/support/event_file_builder.h"
#include "tests/support/source_fixture.h"
#include "tests/support/zone_files.h"
#include "timeplace/date.h"

// The sources of all five types as the engine drives them and beside the organiser: what they do
// alike, and in one table what differs.
namespace pw::test {
namespace {

// How far the organiser's word goes: a cardfile is opened without one, clocks are read without
// leave and not written, the others are not opened as long as it has a dialog open.
enum class Leave { kNotAsked, kToWrite, kToOpen };

struct Named {
  const char* type;
  std::uint32_t kind;
  const char* location;
};

// What the organiser is told of, and by which note.
struct Asked {
  Leave leave;
  const char *note, *noted;
};

// What an open without files gives, and where the cursor is when it is on no record.
struct Odd {
  PWRESULT missing;
  const char* idAtEnd;
  bool missesToStart;  // a search that finds nothing
};

struct Records {
  void (*put)(MemoryFiles&);  // the sample
  void (*write)(PWRecord&, const std::string& text);
  std::string (*read)(PWRecord&);
};

struct SourceKind : Named, Asked, Odd, Records {
  std::vector<const char*> files;  // of the sample; a change shows in the last
  Lines ids;                       // of its records
};

constexpr const char* kCardfile = "C:\\Data\\Friends.WMCard";
constexpr const char* kEventFile = "C:\\Data\\AdaEven.WMW";
constexpr const char* kTaskFile = "C:\\Data\\AdaTASK.WMW";
constexpr const char* kCallFile = "C:\\Data\\AdaCALL.WMW";
constexpr const char* kClockFile = "C:\\Data\\CLOCKS.DAT";

void PutCards(MemoryFiles& files) {
  files.Put(kCardfile, ThreeCards().Build());
}

void PutEvents(MemoryFiles& files) {
  EventFileBytes file;
  const auto item = [](std::int64_t created, std::int64_t id) {
    ItemBytes bytes;
    bytes.created = created;
    bytes.id = id;
    return bytes.Build();
  };
  file.days = {{1998, 60, Day({{36, Slot({item(1, 2), item(3, 4)})}})}};
  files.Put(kEventFile, file.Build());
}

void PutTodos(MemoryFiles& files) {
  CallTaskBytes tasks{"WMWTASK50"};
  tasks.days = {{1998, 40, {Task50(1, 2, "t", ""), Task50(3, 4, "u", "")}}};
  files.Put(kTaskFile, tasks.Build());
  CallTaskBytes calls{"WMWCALL50"};
  calls.days = {{1998, 40, {Call50(5, 6, "c", "")}}};
  files.Put(kCallFile, calls.Build());
}

void PutMemos(MemoryFiles& files) {
  PutBinder(files, "C:\\Data\\Notes", TwoSections());
}

void PutClocks(MemoryFiles& files) {
  std::string clocks;
  for (int i = 0; i < 8; ++i) clocks += Clock("Lima", "Peru", i == 3, i == 3);
  files.Put(kClockFile, clocks);
}

void WriteCard(PWRecord& record, const std::string& text) {
  record.SetField("Last Name", text.c_str());
}
std::string ReadCard(PWRecord& record) {
  return record.FindField("Last Name")->Str();
}

void WriteEvent(PWRecord& record, const std::string& text) {
  PWEventRecord event(&record);
  event.Subject(text.c_str());
  event.StartDate(PWDateTimeStamp(1999, 5, 6, 14, 0, 0));
  event.EndDate(PWDateTimeStamp(1999, 5, 6, 15, 0, 0));
}
std::string ReadEvent(PWRecord& record) {
  return PWEventRecord(&record).Subject().Str();
}

void WriteTodo(PWRecord& record, const std::string& text) {
  PWTaskRecord todo(&record);
  todo.Subject(text.c_str());
  todo.NoStartDate(true);
  todo.NoDueDate(true);
}
std::string ReadTodo(PWRecord& record) {
  return PWTaskRecord(&record).Subject().Str();
}

void WriteMemo(PWRecord& record, const std::string& text) {
  PWMemoRecord(&record).Subject(text.c_str(), PWRecord::kWholeText);
}
std::string ReadMemo(PWRecord& record) {
  return PWMemoRecord(&record).Subject().Str();
}

// Their only text is whether a clock is at home.
void WriteClock(PWRecord& record, const std::string& text) {
  PWTimezoneRecord(&record).Home(text == "home");
}
std::string ReadClock(PWRecord& record) {
  return PWTimezoneRecord(&record).Home() ? "home" : "";
}

const SourceKind kKinds[] = {
    {{"contact", 2, kCardfile},
     {Leave::kNotAsked, "Cardfile", ""},
     {kResultFileMissing, "", false},
     {PutCards, WriteCard, ReadCard},
     {kCardfile},
     {"7", "3", "12"}},
    {{"calendar", 2, "C:\\Data\\Ada"},
     {Leave::kToOpen, "Calendar", kEventFile},
     {kResultOk, "", true},
     {PutEvents, WriteEvent, ReadEvent},
     {kEventFile},
     {"1+2", "3+4"}},
    {{"todo", 2, "C:\\Data\\Ada"},
     {Leave::kToOpen, "To Do", kTaskFile},
     {kResultOk, "", true},
     {PutTodos, WriteTodo, ReadTodo},
     {kCallFile, kTaskFile},
     {"1+2", "3+4", "5+6"}},
    {{"memo", 2, "C:\\Data\\Notes;Work"},
     {Leave::kToOpen, "Write Binder", "C:\\Data\\Notes.WMWrite"},
     {kResultFileMissing, "0", true},
     {PutMemos, WriteMemo, ReadMemo},
     {"C:\\Data\\Notes.WMWrite", "C:\\Data\\Notes.WMNoteHeader", "C:\\Data\\Notes.WMContent"},
     {"900000000", "900000005"}},
    {{"timezone", 0, ""},
     {Leave::kToWrite, "Clocks", kClockFile},
     {kResultFailed, "", false},
     {PutClocks, WriteClock, ReadClock},
     {kClockFile},
     {"0", "1", "2", "3", "4", "5", "6", "7"}},
};

class SourceContractTest : public SourceTest, public testing::WithParamInterface<SourceKind> {
 protected:
  SourceContractTest() : SourceTest(GetParam().type, 3) {
    platform.clock.now = PlainSeconds(1999, 5, 5, 12, 0, 0);
    platform.clock.localOffset = -2 * kSecondsPerHour;
    platform.registry.Set("SOFTWARE\\Gullwing\\PairWise Desktop\\Version 1\\Main", "Version",
                          NumberValue(50));
    PutZoneFiles(platform, SomeCities(), "Lima");
    category.Location = kind.location;
  }

  void Reopen() {
    ASSERT_EQ(source->CloseSource(), 0);
    MakeSource();
    ASSERT_EQ(source->Open(0), 0);
  }
  PWRESULT Add(const std::string& text) {
    PWRecord record;
    kind.write(record, text);
    return source->AddRecord(record);
  }
  PWRESULT Change(const std::string& text) {
    PWRecord record;
    EXPECT_EQ(source->ReadRecord(&record), 0);
    kind.write(record, text);
    return source->UpdateRecord(record);
  }
  std::string Text() {
    PWRecord record;
    return source->ReadRecord(&record) == 0 ? kind.read(record) : "none";
  }
  std::string TextOf(const std::string& id) {
    return source->FindRecord(id.c_str()) == 0 ? Text() : "not found";
  }
  // What the file that shows a change holds.
  std::string Saved() { return platform.files.Get(kind.files.back()).value_or("none"); }
  void PutUnreadable() {
    for (const char* file : kind.files) platform.files.Put(file, "cut");
  }
  // The steps that the organiser hears of, where it is asked.
  Steps IfAsked(const Steps& steps) const {
    return kind.leave == Leave::kNotAsked ? Steps() : steps;
  }

  const SourceKind& kind = GetParam();
};

TEST_P(SourceContractTest, EachRecordIsWalkedToAndFound) {
  kind.put(platform.files);
  EXPECT_EQ(source->Kind, kind.kind);
  ASSERT_EQ(source->Open(0), 0);
  EXPECT_EQ(source->RecordCount(), kind.ids.size());
  EXPECT_EQ(Ids(), kind.ids);
  for (int i = 0; i < 2; ++i) {
    PWRecord record;
    EXPECT_EQ(Id(), kind.idAtEnd);
    // A cardfile's source keeps the values that it had last.
    EXPECT_EQ(source->ReadRecord(&record), kind.leave == Leave::kNotAsked ? 0 : 1);
    EXPECT_EQ(source->DeleteRecord(), 1);
    EXPECT_EQ(source->NextRecord(), 1) << "at the end the cursor stays";
  }
  for (const std::string& id : kind.ids) {
    EXPECT_EQ(source->FindRecord(id.c_str()), 0);
    EXPECT_EQ(Id(), id);
  }
  EXPECT_EQ(source->FindRecord("99999"), 1);
  EXPECT_EQ(Id(), kind.missesToStart ? kind.ids[0] : kind.idAtEnd);
  EXPECT_EQ(source->RecordCount(), kind.ids.size());
}

TEST_P(SourceContractTest, AnUpdateIsKeptAndTakesNothingElse) {
  kind.put(platform.files);
  ASSERT_EQ(source->Open(0), 0);
  std::vector<std::string> texts;
  for (const std::string& id : kind.ids) texts.push_back(TextOf(id));
  texts[1] = "home";
  ASSERT_EQ(source->FindRecord(kind.ids[1].c_str()), 0);
  EXPECT_EQ(Change("home"), 0);
  EXPECT_EQ(Text(), "home") << "the cursor stays on it";
  EXPECT_EQ(Id(), kind.ids[1]);
  EXPECT_EQ(source->RecordTimeStamp(), kind.leave != Leave::kToWrite
                                           ? PWDateTimeStamp(1999, 5, 5, 10, 0, 0)
                                           : PWDateTimeStamp());
  Reopen();
  for (std::size_t i = 0; i < kind.ids.size(); ++i) {
    // The one home clock was taken from another.
    const bool wasHome = texts[i] == "home" && i != 1;
    EXPECT_EQ(TextOf(kind.ids[i]), wasHome ? "" : texts[i]) << kind.ids[i];
  }
}

TEST_P(SourceContractTest, TheOrganiserIsToldAroundTheWork) {
  const bool isAsked = kind.leave != Leave::kNotAsked;
  const WindowId organiser = platform.windows.Add("Wingmate_95");
  std::string atEnd = "not told";
  platform.windows.SetAnswer(organiser, [&](const WindowMessage& message) {
    if (message.wParam == 1) kind.put(platform.files);
    if (message.wParam == 2) atEnd = Saved();
    return kind.leave == Leave::kToWrite ? 0 : 1;
  });
  isAsked ? PutUnreadable() : kind.put(platform.files);
  ASSERT_EQ(source->Open(0), 0) << "read once it has let go, whatever it answered";
  EXPECT_EQ(Ids(), kind.ids);
  const auto note = platform.registry.Get("SOFTWARE\\Gullwing\\Pairwise 1.0\\Common", kind.note);
  EXPECT_EQ(note ? note->data : "", kind.noted);
  source->FirstRecord();
  EXPECT_EQ(Change("home"), 0);
  const std::string before = Saved();
  EXPECT_EQ(source->CloseSource(), 0);
  EXPECT_EQ(Sent(), IfAsked({0, 1, 2}));
  EXPECT_NE(Saved(), before);
  EXPECT_EQ(atEnd, isAsked ? Saved() : "not told") << "it was written before the end is told";
  EXPECT_EQ(log->lines, Lines{});
}

TEST_P(SourceContractTest, AnOrganiserWithADialogOpenKeepsItsFiles) {
  kind.put(platform.files);
  const std::string before = Saved();
  MakeOrganiserBusy(platform);
  const bool opens = kind.leave != Leave::kToOpen;
  EXPECT_EQ(source->Open(0), opens ? 0 : 1);
  EXPECT_EQ(source->RecordCount(), opens ? kind.ids.size() : 0);
  EXPECT_EQ(Sent(), Steps{});
  const Lines lines[] = {
      {},
      {"9 PWDesktop-W0003: Timezone information cannot be modified in Wingmate 99 while it is "
       "running."},
      {"1 PWDesktop-E0001: All dialogs in Wingmate 99 must be closed before PairWise can "
       "synchronize its data."},
  };
  EXPECT_EQ(log->lines, lines[static_cast<int>(kind.leave)]);
  if (opens) {
    source->FirstRecord();
    EXPECT_EQ(Change("home"), kind.leave == Leave::kToWrite ? 1 : 0);
    EXPECT_EQ(source->CloseSource(), 0);
  }
  EXPECT_EQ(Saved() == before, kind.leave != Leave::kNotAsked);
}

TEST_P(SourceContractTest, WhatCannotBeReadIsLetGoAgain) {
  platform.windows.Add("Wingmate_95");
  platform.windows.SetAnswer(platform.windows.Find("Wingmate_95"), 0);
  PutUnreadable();
  EXPECT_EQ(source->Open(0), 1);
  EXPECT_EQ(Sent(), IfAsked({0, 1, 3}));
  EXPECT_EQ(log->lines, Lines{});
  PWRecord record;
  EXPECT_EQ(Add("new"), 1);
  EXPECT_EQ(source->UpdateRecord(record), 1);
  EXPECT_EQ(source->DeleteRecord(), 1);
  EXPECT_EQ(source->ReadRecord(&record), 1);
  EXPECT_EQ(source->FirstRecord(), 1);
  EXPECT_EQ(source->NextRecord(), 1);
  EXPECT_EQ(source->FindRecord(kind.ids[0].c_str()), 1);
  EXPECT_EQ(source->RecordCount(), 0U);
  EXPECT_EQ(source->RecordCRC(), 0U);
  EXPECT_EQ(Id(), kind.idAtEnd);
  EXPECT_EQ(source->CloseSource(), kind.leave == Leave::kToWrite ? 1 : 0);
  EXPECT_EQ(Saved(), "cut");
}

TEST_P(SourceContractTest, AMissingFileIsToldOrMade) {
  platform.windows.Add("Wingmate_95");
  EXPECT_EQ(source->Open(0), kind.missing);
  EXPECT_EQ(source->RecordCount(), 0U);
  const Steps steps[] = {{0, 1}, {0, 1, 3}, {}};
  EXPECT_EQ(Sent(), steps[kind.missing == kResultFileMissing ? 2 : kind.missing]);
  const bool isMade = platform.files.Exists(kind.files.back());
  EXPECT_EQ(isMade, kind.type == std::string("todo"));
}

TEST_P(SourceContractTest, ASourceThatIsDroppedKeepsTheFilesAndTellsNobody) {
  kind.put(platform.files);
  ASSERT_EQ(source->Open(0), 0);
  source->FirstRecord();
  EXPECT_EQ(Change("home"), 0);
  const std::string before = Saved();
  platform.windows.Add("Wingmate_95");
  source.reset();
  EXPECT_EQ(Saved(), before);
  EXPECT_EQ(Sent(), Steps{});
}

// Of those that take new records.
class AddingContractTest : public SourceContractTest {};

TEST_P(AddingContractTest, RecordsComeAndGo) {
  kind.put(platform.files);
  ASSERT_EQ(source->Open(0), 0);
  for (const std::string& id : kind.ids) {
    ASSERT_EQ(source->FindRecord(id.c_str()), 0);
    EXPECT_EQ(source->DeleteRecord(), 0);
  }
  Reopen();
  EXPECT_EQ(source->RecordCount(), 0U);
  EXPECT_EQ(source->FirstRecord(), 1);
  EXPECT_EQ(source->NextRecord(), 1);
  EXPECT_EQ(Add("a"), 0);
  EXPECT_EQ(Text(), "a") << "the new one is the current one";
  const std::string a = Id();
  EXPECT_EQ(Add("b"), 0);
  const std::string b = Id();
  EXPECT_EQ(source->RecordCount(), 2U);
  EXPECT_EQ(source->RecordTimeStamp(), PWDateTimeStamp(1999, 5, 5, 10, 0, 0));
  Reopen();
  EXPECT_EQ(source->RecordCount(), 2U);
  EXPECT_EQ(TextOf(a), "a");
  EXPECT_EQ(TextOf(b), "b");
  ASSERT_EQ(source->FindRecord(a.c_str()), 0);
  EXPECT_EQ(source->DeleteRecord(), 0);
  EXPECT_EQ(TextOf(a), "not found");
  Reopen();
  EXPECT_EQ(Ids(), Lines{b});
  EXPECT_EQ(TextOf(b), "b");
}

TEST_P(AddingContractTest, WhatWasNotChangedStaysAsItWas) {
  kind.put(platform.files);
  const std::string before = Saved();
  ASSERT_EQ(source->Open(0), 0);
  const std::size_t writes = platform.files.Writes();
  EXPECT_EQ(Ids(), kind.ids);
  EXPECT_EQ(source->CloseSource(), 0);
  EXPECT_EQ(Saved(), before);
  const std::size_t rewritten = kind.put == PutTodos ? 2 : 0;  // both, changed or not
  EXPECT_EQ(platform.files.Writes() - writes, rewritten);
}

const auto nameOf = [](const auto& info) { return std::string(info.param.type); };
INSTANTIATE_TEST_SUITE_P(AllTypes, SourceContractTest, testing::ValuesIn(kKinds), nameOf);
INSTANTIATE_TEST_SUITE_P(AllButClocks, AddingContractTest,
                         testing::ValuesIn(kKinds, std::end(kKinds) - 1), nameOf);

}  // namespace
}  // namespace pw::test
