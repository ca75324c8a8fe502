#include "host/record_views.h"

#include <array>
#include <cstdint>
#include <cstdlib>

#include "base/codepage.h"
#include "base/text.h"
#include "framework/memo_record.h"
#include "framework/timezone_record.h"
#include "host/event_records.h"
#include "host/todo_records.h"

namespace pw {
namespace {

std::string Utf8(const PWString& text) {
  return CodePageToUtf8(text.View());
}

std::string YesOrNothing(bool flag) {
  return flag ? "yes" : "";
}

// "-03:30" for minutes east of Greenwich.
std::string OffsetText(std::int32_t minutes) {
  const std::int32_t size = std::abs(minutes);
  return Format("%s%02d:%02d", minutes < 0 ? "-" : "+", size / 60, size % 60);
}

// A text of a table, or the number itself where the table ends.
template <std::size_t kSize>
std::string Word(const std::array<const char*, kSize>& words, std::uint32_t number) {
  if (number >= 1 && number <= kSize) return words[number - 1];
  return std::to_string(number);
}

constexpr std::array<const char*, 12> kMonths = {"Jan", "Feb", "Mar", "Apr", "May", "Jun",
                                                 "Jul", "Aug", "Sep", "Oct", "Nov", "Dec"};
constexpr std::array<const char*, 5> kWeeks = {"1st", "2nd", "3rd", "4th", "last"};
constexpr std::array<const char*, 7> kDays = {"Sun", "Mon", "Tue", "Wed", "Thu", "Fri", "Sat"};

// "last Sun Mar 02:00", or "31 Mar 02:00": four bytes of month, week, weekday or day, and hour, all
// but the last from 1, the week 0 for a fixed date.
std::string SwitchText(std::uint32_t word) {
  if (word == 0) return "";
  const std::uint32_t week = word >> 16 & 0xFF;
  const std::uint32_t day = word >> 8 & 0xFF;
  const std::string which =
      week == 0 ? std::to_string(day) : Word(kWeeks, week) + " " + Word(kDays, day);
  return which + " " + Word(kMonths, word >> 24) +
         Format(" %02d:00", static_cast<int>(word & 0xFF));
}

std::vector<std::string> TimezoneTexts(PWRecord& record, const CityClocks& /*cities*/) {
  const PWTimezoneRecord clock(&record);
  return {Utf8(clock.City()),
          Utf8(clock.State()),
          Utf8(clock.Country()),
          OffsetText(static_cast<std::int32_t>(clock.Bias())),
          YesOrNothing(clock.Home()),
          YesOrNothing(clock.Active()),
          SwitchText(clock.DaylightSwitch()),
          SwitchText(clock.StandardSwitch())};
}

const char* PriorityWord(TodoPriority priority) {
  if (priority == TodoPriority::kHigh) return "high";
  return priority == TodoPriority::kLow ? "low" : "normal";
}

std::vector<std::string> TodoTexts(PWRecord& record, const CityClocks& /*cities*/) {
  const Todo todo = TodoOf(record);
  return {
      todo.call ? "call" : "task",  todo.subject, todo.start, todo.due, PriorityWord(todo.priority),
      YesOrNothing(todo.completed), todo.note};
}

std::vector<std::string> MemoTexts(PWRecord& record, const CityClocks& /*cities*/) {
  const PWMemoRecord memo(&record);
  return {Utf8(memo.Subject()), Utf8(memo.Body())};
}

}  // namespace

bool HasStamps(std::string_view type) {
  return type != "timezone";
}

const RecordView* FindRecordView(std::string_view type) {
  static const RecordView views[] = {
      {"timezone",
       {"City", "State", "Country", "Offset", "Home", "Active", "Daylight time from", "to"},
       TimezoneTexts},
      {"todo", {"Kind", "Subject", "Start", "Due", "Priority", "Done", "Note"}, TodoTexts},
      {"calendar", kEventColumns, EventColumns},
      {"memo", {"Subject", "Body"}, MemoTexts},
  };
  for (const RecordView& view : views) {
    if (view.type == type) return &view;
  }
  return nullptr;
}

}  // namespace pw
