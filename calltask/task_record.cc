#include "calltask/task_record.h"

#include "base/text.h"
#include "timeplace/zones.h"

namespace calltask = pw::calltask;

namespace {

// What an id shows for no due date.
constexpr calltask::Date kDateOfZero = {1970, 1, 1};

std::int32_t SecondsOf(const calltask::Date& date) {
  return PlainSeconds(date.year, date.month, date.day, 0, 0, 0);
}

}  // namespace

void CTaskRecord::SetStart(std::int32_t seconds) {
  DayRecord::SetStart(seconds);
  const WMBrokenTime local = SecondsToLocal(seconds);
  words.b = calltask::WithStartDate(words.b, {local.year + 1900, local.mon + 1, local.mday});
}

std::optional<calltask::Date> CTaskRecord::DueDate() const {
  const calltask::Date date = calltask::DueDateOf(words.b);
  if ((flags & calltask::kNoDueDate) != 0 || date == calltask::kNoTaskDate) return std::nullopt;
  return date;
}

void CTaskRecord::SetDueDate(const calltask::Date& date) {
  words.b = calltask::WithDueDate(words.b, date);
  SetFlag(calltask::kNoDueDate, false);
}

void CTaskRecord::ClearDueDate() {
  words.b = calltask::WithDueDate(words.b, {});
  SetFlag(calltask::kNoDueDate, true);
}

EPWTaskRecordPriority CTaskRecord::Priority() const {
  const auto [digit, level] = calltask::PriorityOf(flags);
  if (digit != calltask::kNoDigit) {
    return digit != 0 || level != 0 ? kPriorityHigh : kPriorityNormal;
  }
  if (level == 1) return kPriorityLow;
  return level == 3 ? kPriorityHigh : kPriorityNormal;
}

// A task that is pressing already keeps the digit that the organiser gave it.
void CTaskRecord::SetPriority(EPWTaskRecordPriority priority) {
  const auto [digit, level] = calltask::PriorityOf(flags);
  const bool hasDigit = digit != calltask::kNoDigit && (digit != 0 || level != 0);
  SetFlag(calltask::kHasPriority, priority != kPriorityLow);
  if (priority == kPriorityLow) {
    flags = calltask::WithPriority(flags, {calltask::kNoDigit, 1});
  } else if (priority != kPriorityHigh) {
    flags = calltask::WithPriority(flags, {calltask::kNoDigit, 2});
  } else if (!hasDigit) {
    flags = calltask::WithPriority(flags, {calltask::kNoDigit, 3});
  }
}

std::uint16_t CTaskRecord::FilingKey() const {
  const calltask::Date date = calltask::StartDateOf(words.b);
  if (date == calltask::kNoTaskDate) return calltask::kCatchAllKey;
  // 29 February of a year that was brought down to 2005 becomes 1 March.
  return pw::FilingKeyOf(BrokenTimeOf(SecondsOf(date)));
}

std::int32_t CTaskRecord::Rank() const {
  const auto due = DueDate();
  return due ? SecondsOf(*due) : 0;
}

bool CTaskRecord::Take(std::string_view& bytes, calltask::FormatVersion version) {
  return calltask::TakeTask(bytes, version, *this, words);
}

void CTaskRecord::Encode(pw::ByteWriter& out, calltask::FormatVersion version) const {
  calltask::EncodeTask(out, version, *this, words);
}

std::string CTaskRecord::ContentId() const {
  const calltask::Date due = DueDate().value_or(kDateOfZero);
  return pw::Format("%2d%2d%4d", due.month, due.day, due.year) + std::string(SubjectText()) +
         "WMTodo";
}
