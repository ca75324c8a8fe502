#include "host/import/record_limits.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>

#include "base/codepage.h"
#include "framework/event_record.h"
#include "framework/memo_record.h"
#include "framework/task_record.h"
#include "host/formats/contact.h"
#include "host/record_reader.h"

namespace pw {
namespace {

constexpr std::size_t kLongestPart = UINT16_MAX;
constexpr const char* kTooLong =
    "it is longer than the 65,535 bytes that the organiser's file can hold";
constexpr const char* kContactLog = "Contact Log";

// A card's fields are one part of it, with a line end behind each, and its log another.
std::size_t LongestPartOfCard(const PWRecord& record) {
  constexpr std::size_t kAroundField = 2;
  constexpr std::size_t kStamp = 32;
  std::size_t fields = kStamp;
  std::size_t log = 0;
  for (const PWRecord::Field& field : record.Fields()) {
    const std::size_t length = field.value.View().size();
    if (field.name == kContactLog) {
      log = length;
    } else {
      fields += length + kAroundField;
    }
  }
  return std::max(fields, log);
}

// A series is one part, with its texts and what it has for each date that is otherwise.
std::size_t LongestPartOfEvent(PWRecord& record) {
  constexpr std::size_t kFixed = 256;
  constexpr std::size_t kException = 20;
  const PWEventRecord event(&record);
  std::size_t length = kFixed + event.Subject().View().size() + event.Location().View().size() +
                       event.Notes().View().size();
  PWRecurrancePattern* pattern = event.RecurrancePattern();
  if (pattern != nullptr) length += kException * pattern->Exceptions().Count();
  return length;
}

std::size_t LongestPartOf(PWRecord& record, std::string_view type) {
  if (type == kContactType) return LongestPartOfCard(record);
  if (type == kCalendarType) return LongestPartOfEvent(record);
  if (type != kTodoType) return 0;
  const PWTaskRecord task(&record);
  return task.Subject().View().size() + task.Note().View().size();
}

}  // namespace

std::string WhyTooLong(PWRecord& record, std::string_view type) {
  if (LongestPartOf(record, type) <= kLongestPart) return {};
  return kTooLong;
}

std::string WhyTooLongThen(PWSource& source, const std::vector<std::string>& names,
                           const PWRecord& record) {
  PWRecord whole;
  for (std::size_t i = 0; i < names.size(); ++i) {
    const std::string name = Utf8ToCodePageLossy(names[i]);
    const auto column = static_cast<std::int32_t>(i);
    PWField stored;
    source.GetField(column, stored);
    const PWString* named = record.FindField(name);
    const bool isSet = named != nullptr && source.FindField(name.c_str()) == column;
    // Each under a name of its own.
    whole.SetField(name == kContactLog ? name : std::to_string(i),
                   isSet ? named->View() : stored.text.View());
  }
  return WhyTooLong(whole, kContactType);
}

std::string WhyFull(PWSource& source) {
  if (source.RecordCount() < kMostContacts) return {};
  return "a cardfile holds 65,535 cards at most";
}

std::string WhyEmpty(PWRecord& record, std::string_view type) {
  bool isEmpty = false;
  if (type == kContactType) {
    isEmpty = std::all_of(record.Fields().begin(), record.Fields().end(),
                          [](const PWRecord::Field& field) { return field.value.IsEmpty(); });
  } else if (type == kTodoType) {
    const PWTaskRecord task(&record);
    isEmpty =
        task.Subject().IsEmpty() && task.Note().IsEmpty() && task.NoStartDate() && task.NoDueDate();
  } else if (type == kMemoType) {
    const PWMemoRecord memo(&record);
    isEmpty = memo.Subject().IsEmpty() && memo.Body().IsEmpty();
  }
  return isEmpty ? "it holds nothing" : "";
}

std::string WhyWithoutLength(PWRecord& record, std::string_view type) {
  if (type != kCalendarType) return {};
  const PWEventRecord event(&record);
  if (event.AllDay() || event.Recurring()) return {};
  PWDateTimeStamp start = event.StartDate();
  PWDateTimeStamp end = event.EndDate();
  start.second = end.second = 0;
  return start == end ? "an event of the organiser's takes a minute at least" : "";
}

}  // namespace pw
