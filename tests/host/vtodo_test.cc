#include "host/formats/vtodo.h"

#include <libical/ical.h>

#include <gtest/gtest.h>

#include "host/formats/icalendar.h"
#include "host/formats/record_uid.h"
#include "host/utc_stamp.h"
#include "platform/posix/posix_clock.h"

namespace pw {
namespace {

constexpr const char* kNow = "20260102T030405Z";

std::string FileOf(const Todo& todo) {
  std::string file;
  BeginCalendar(file);
  AppendVTodo(file, todo, kNow);
  EndCalendar(file);
  return file;
}

Todo Task() {
  Todo todo;
  todo.uid = "u";
  todo.changed = "19980302T120000Z";
  todo.subject = "Tea, cake; and \\ \xC3\xA9";
  todo.note = "one\r\n\ttwo";
  todo.start = "1998-03-02";
  todo.due = "1998-03-04";
  todo.priority = TodoPriority::kHigh;
  return todo;
}

constexpr const char* kHead =
    "BEGIN:VCALENDAR\r\nVERSION:2.0\r\nPRODID:-//Pairwise//Organiser//EN\r\n";

TEST(VTodoTest, EveryValueHasItsProperty) {
  EXPECT_EQ(FileOf(Task()), std::string(kHead) +
                                "BEGIN:VTODO\r\nUID:u\r\nDTSTAMP:19980302T120000Z\r\n"
                                "LAST-MODIFIED:19980302T120000Z\r\n"
                                "SUMMARY:Tea\\, cake\\; and \\\\ \xC3\xA9\r\n"
                                "DESCRIPTION:one\\n\ttwo\r\nDTSTART;VALUE=DATE:19980302\r\n"
                                "DUE;VALUE=DATE:19980304\r\nPRIORITY:1\r\nSTATUS:NEEDS-ACTION\r\n"
                                "END:VTODO\r\nEND:VCALENDAR\r\n");
  Todo call;
  call.uid = "u";
  call.call = true;
  call.completed = true;
  call.priority = TodoPriority::kLow;
  EXPECT_EQ(FileOf(call), std::string(kHead) +
                              "BEGIN:VTODO\r\nUID:u\r\nDTSTAMP:20260102T030405Z\r\nPRIORITY:9\r\n"
                              "STATUS:COMPLETED\r\nPERCENT-COMPLETE:100\r\nCATEGORIES:Call\r\n"
                              "X-PAIRWISE-CALL:TRUE\r\nEND:VTODO\r\nEND:VCALENDAR\r\n")
      << "when it was completed isn't known";
  call.changed = "19980302T120000Z";
  EXPECT_NE(FileOf(call).find("\r\nCOMPLETED:19980302T120000Z\r\n"), std::string::npos);
}

TEST(VTodoTest, WhatTheStandardHasNoPlaceForIsKeptBesideIt) {
  const struct {
    const char *start, *due;
    std::string lines;
  } dates[] = {
      {"", "", ""},
      {"1998-03-04", "", "DTSTART;VALUE=DATE:19980304\r\n"},
      {"1998-03-04", "1998-03-04", "X-PAIRWISE-DTSTART:1998-03-04\r\nDUE;VALUE=DATE:19980304\r\n"},
      {"1998-03-05", "1998-03-04", "X-PAIRWISE-DTSTART:1998-03-05\r\nDUE;VALUE=DATE:19980304\r\n"},
      {"", "1998-02-30", "X-PAIRWISE-DUE:1998-02-30\r\n"},
      {"1998-03-05", "1997-00-31", "DTSTART;VALUE=DATE:19980305\r\nX-PAIRWISE-DUE:1997-00-31\r\n"},
  };
  for (const auto& each : dates) {
    Todo todo = Task();
    todo.note.clear();
    todo.start = each.start;
    todo.due = each.due;
    EXPECT_NE(FileOf(todo).find("\xC3\xA9\r\n" + each.lines + "PRIORITY"), std::string::npos)
        << FileOf(todo);
  }
  Todo todo = Task();
  todo.note = "bell \x07, lone\rand\n";
  EXPECT_NE(FileOf(todo).find("\r\nDESCRIPTION:bell  \\, lone\\nand\\n\r\n"
                              "X-PAIRWISE-DESCRIPTION;ENCODING=BASE64;VALUE=BINARY:"
                              "YmVsbCAHLCBsb25lDWFuZAo\r\n =\r\n"),
            std::string::npos)
      << FileOf(todo);
}

TEST(VTodoTest, AnotherProgramReadsWhatIsMeant) {
  Todo todo = Task();
  todo.subject = std::string(300, 'x') + "\xE2\x82\xAC \"quoted\": no, 'no'";
  icalcomponent* file = icalparser_parse_string(FileOf(todo).c_str());
  ASSERT_NE(file, nullptr);
  icalrestriction_check(file);
  EXPECT_EQ(icalcomponent_count_errors(file), 0) << icalcomponent_as_ical_string(file);
  icalcomponent* read = icalcomponent_get_first_component(file, ICAL_VTODO_COMPONENT);
  ASSERT_NE(read, nullptr);
  EXPECT_EQ(icalcomponent_get_summary(read), todo.subject);
  EXPECT_STREQ(icalcomponent_get_description(read), "one\n\ttwo");
  const icaltimetype due = icalcomponent_get_due(read);
  EXPECT_TRUE(due.is_date && due.year == 1998 && due.month == 3 && due.day == 4);
  EXPECT_EQ(icalcomponent_get_status(read), ICAL_STATUS_NEEDSACTION);
  icalcomponent_free(file);
}

TEST(RecordUidTest, IsThatOfTheFileAndTheId) {
  const std::string uid = MakeRecordUid("C:\\Data\\Ada", "1+-2 x");
  EXPECT_EQ(uid, MakeRecordUid("C:\\Data\\Ada", "1+-2 x"));
  EXPECT_NE(uid, MakeRecordUid("C:\\Data\\Bea", "1+-2 x"));
  const std::string second = MakeRecordUid("C:\\Data\\Ada", "1+-2 x", 2);
  EXPECT_NE(uid, second);
  const struct {
    std::string uid;
    const char* id;
    std::size_t occurrence;
    bool isOfBea;
  } cases[] = {{uid, "1+-2 x", 1, false},
               {second, "1+-2 x", 2, false},
               {second.substr(0, second.size() - 1) + "x", "1+-2 x", 0, false},
               {"another-" + uid, "", 1, true}};
  for (const auto& each : cases) {
    SCOPED_TRACE(each.uid);
    const RecordId id = IdOfRecordUid(each.uid);
    EXPECT_EQ(id.text, each.id);
    EXPECT_EQ(id.occurrence, each.occurrence);
    EXPECT_TRUE(id.IsOf("C:\\Data\\Ada"));
    EXPECT_EQ(id.IsOf("C:\\Data\\Bea"), each.isOfBea);
  }
}

// Around both switches, west and east of Greenwich, and fields that are no time.
TEST(UtcStampTest, ALocalTimeIsTakenWithTheMachinesZone) {
  PosixClock clock;
  const struct {
    PWDateTimeStamp local;
    const char* utc;
  } east[] = {
      {{2026, 3, 29, 1, 59, 59}, "20260329T005959Z"},
      {{2026, 3, 29, 2, 30, 0}, "20260329T013000Z"},
      {{2026, 3, 29, 3, 0, 0}, "20260329T010000Z"},
      {{2026, 10, 25, 1, 59, 59}, "20261024T235959Z"},
      {{2026, 10, 25, 2, 30, 0}, "20261025T013000Z"},
      {{2026, 10, 25, 3, 0, 0}, "20261025T020000Z"},
  };
  ::setenv("TZ", "CET-1CEST,M3.5.0,M10.5.0/3", 1);
  for (const auto& each : east) EXPECT_EQ(UtcStampOfLocal(clock, each.local), each.utc);
  const struct {
    PWDateTimeStamp local;
    const char* utc;
  } west[] = {
      {{2026, 1, 31, 23, 0, 0}, "20260201T040000Z"},
      {{2026, 3, 8, 1, 59, 59}, "20260308T065959Z"},
      {{2026, 3, 8, 3, 0, 0}, "20260308T070000Z"},
      {{2026, 11, 1, 0, 59, 59}, "20261101T045959Z"},
      {{2026, 3, 8, 2, 30, 0}, "20260308T073000Z"},
      {{2026, 11, 1, 1, 30, 0}, "20261101T063000Z"},
      {{2026, 11, 1, 2, 0, 0}, "20261101T070000Z"},
      {{2024, 2, 29, 12, 0, 0}, "20240229T170000Z"},
      {{2026, 2, 29, 12, 0, 0}, ""},
      {{2026, 2, 28, 24, 0, 0}, ""},
      {{0, 0, 0, 0, 0, 0}, ""},
  };
  ::setenv("TZ", "EST5EDT,M3.2.0,M11.1.0", 1);
  for (const auto& each : west) EXPECT_EQ(UtcStampOfLocal(clock, each.local), each.utc);
  ::unsetenv("TZ");
}

}  // namespace
}  // namespace pw
