#include "calltask/day_record.h"

#include "base/process_wide.h"
#include "base/text.h"
#include "platform/platform.h"
#include "timeplace/zones.h"

namespace pw {
namespace {

ProcessWide<std::uint32_t> nextId;

// The count of ids in the high half, the low half of the machine's ticks below it.
std::uint32_t NewIdWord() {
  const std::uint32_t count = (*nextId)++;
  return count << 16 | (CurrentPlatform().clock->Ticks() & 0xFFFF);
}

}  // namespace

DayRecord::DayRecord() {
  idWord1 = NewIdWord();
  lastChange = UtcNowSeconds();
  idWord2 = static_cast<std::uint32_t>(lastChange);
}

void DayRecord::SetTexts(std::string_view newSubject, std::string_view newNote) {
  subject = newSubject;
  note = newNote;
  calltask::MakeStorable(subject);
  calltask::MakeStorable(note);
}

std::string DayRecord::IdText(calltask::FormatVersion version) const {
  if (version == calltask::FormatVersion::k30) return ContentId();
  return FormatLong(static_cast<std::int32_t>(idWord1)) + "+" +
         FormatLong(static_cast<std::int32_t>(idWord2));
}

std::string_view DayRecord::SubjectText() const {
  return UpToZero(subject);
}

std::uint16_t FilingKeyOf(const WMBrokenTime& date) {
  return calltask::FilingKey(date.year + 1900, date.yday);
}

}  // namespace pw
