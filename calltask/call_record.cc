#include "calltask/call_record.h"

#include <algorithm>

#include "timeplace/zones.h"

namespace calltask = pw::calltask;

namespace {

constexpr calltask::Date kEngineSaysNone = {0, 1, 0};
constexpr std::int32_t kFirstDueYear = 1990;
constexpr std::int32_t kLastDueYear = 2029;

}  // namespace

std::optional<calltask::Date> WMCallRec::DueDate() const {
  if (!calltask::IsCallDueDate(due)) return std::nullopt;
  return due;
}

void WMCallRec::SetDueDate(const calltask::Date& date) {
  if (date == kEngineSaysNone) return ClearDueDate();
  due = date;
  due.year = std::clamp(date.year, kFirstDueYear, kLastDueYear);
  SetFlag(calltask::kNoDueDate, false);
}

EPWTaskRecordPriority WMCallRec::Priority() const {
  return (flags & calltask::kHighPriority) != 0 ? kPriorityHigh : kPriorityNormal;
}

void WMCallRec::SetPriority(EPWTaskRecordPriority priority) {
  SetFlag(calltask::kHighPriority, priority == kPriorityHigh);
}

std::uint16_t WMCallRec::FilingKey() const {
  return pw::FilingKeyOf(SecondsToLocal(start));
}

bool WMCallRec::Take(std::string_view& bytes, calltask::FormatVersion version) {
  return calltask::TakeCall(bytes, version, *this, due);
}

void WMCallRec::Encode(pw::ByteWriter& out, calltask::FormatVersion version) const {
  calltask::EncodeCall(out, version, *this, due);
}

std::string WMCallRec::ContentId() const {
  return std::string(SubjectText()) + "WMCall";
}
