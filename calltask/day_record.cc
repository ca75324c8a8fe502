#include "calltask/day_record.h"

#include <functional>

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

constexpr char kIdSeparator = '+';  // between the words of an id

std::uint64_t DigestOfWords(std::uint32_t first, std::uint32_t second) {
  return std::uint64_t{first} << 32 | second;
}

std::string IdOfWords(std::uint32_t first, std::uint32_t second) {
  return FormatLong(static_cast<std::int32_t>(first)) + kIdSeparator +
         FormatLong(static_cast<std::int32_t>(second));
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
  return version == calltask::FormatVersion::k30 ? ContentId() : IdOfWords(idWord1, idWord2);
}

std::uint64_t DayRecord::IdDigest(calltask::FormatVersion version) const {
  if (version == calltask::FormatVersion::k30) return std::hash<std::string>()(ContentId());
  return DigestOfWords(idWord1, idWord2);
}

std::optional<std::uint64_t> DayRecord::DigestOfId(const std::string& id,
                                                   calltask::FormatVersion version) {
  if (version == calltask::FormatVersion::k30) return std::hash<std::string>()(id);
  const std::size_t separator = id.find(kIdSeparator);
  if (separator == std::string::npos) return std::nullopt;
  const auto word1 = static_cast<std::uint32_t>(ParseLong(id));
  const auto word2 =
      static_cast<std::uint32_t>(ParseLong(std::string_view(id).substr(separator + 1)));
  if (IdOfWords(word1, word2) != id) return std::nullopt;
  return DigestOfWords(word1, word2);
}

std::string_view DayRecord::SubjectText() const {
  return UpToZero(subject);
}

std::uint16_t FilingKeyOf(const WMBrokenTime& date) {
  return calltask::FilingKey(date.year + 1900, date.yday);
}

}  // namespace pw
