#include "host/import/record_limits.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>

#include "framework/event_record.h"
#include "framework/task_record.h"
#include "host/record_reader.h"

namespace pw {
namespace {

constexpr std::size_t kLongestPart = UINT16_MAX;
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
  return "it is longer than the 65,535 bytes that the organiser's file can hold";
}

}  // namespace pw
