#include "calltask/task_format.h"

#include <algorithm>

namespace pw::calltask {
namespace {

constexpr std::uint32_t kDigitShift = 25;
constexpr std::uint32_t kDigitBits = 7;
constexpr std::uint32_t kLevelShift = 28;
constexpr std::uint32_t kLevelBits = 3;

constexpr std::uint32_t kHalfBits = 0xFFFF;
constexpr std::uint32_t kDueShift = 16;

Date DecodeHalf(std::uint32_t half) {
  const std::uint32_t year = ((half >> 4) & 7) | ((half >> 11) & 8);
  return {kFirstYear + static_cast<std::int32_t>(year), static_cast<std::int32_t>(half & 0xF) + 1,
          static_cast<std::int32_t>((half >> 8) & 0x1F)};
}

std::uint32_t EncodeHalf(const Date& date) {
  constexpr std::uint32_t kTopBitsOfHalf = kTopBits & kHalfBits;
  if (date == Date{}) return kTopBitsOfHalf;
  const auto year = static_cast<std::uint32_t>(std::clamp(date.year, kFirstYear, kLastYear)) -
                    static_cast<std::uint32_t>(kFirstYear);
  const std::uint32_t month = static_cast<std::uint32_t>(date.month - 1) & 0xF;
  const std::uint32_t day = static_cast<std::uint32_t>(date.day) & 0x1F;
  return kTopBitsOfHalf | month | (year & 7) << 4 | day << 8 | (year & 8) << 11;
}

}  // namespace

TaskPriority PriorityOf(std::uint32_t wordA) {
  return {(wordA >> kDigitShift) & kDigitBits, (wordA >> kLevelShift) & kLevelBits};
}

std::uint32_t WithPriority(std::uint32_t wordA, const TaskPriority& priority) {
  const std::uint32_t others = wordA & ~(kDigitBits << kDigitShift | kLevelBits << kLevelShift);
  return others | kTopBits | priority.digit << kDigitShift | priority.level << kLevelShift;
}

Date StartDateOf(std::uint32_t wordB) {
  return DecodeHalf(wordB & kHalfBits);
}

Date DueDateOf(std::uint32_t wordB) {
  return DecodeHalf(wordB >> kDueShift);
}

std::uint32_t WithStartDate(std::uint32_t wordB, const Date& date) {
  return (wordB & ~kHalfBits) | EncodeHalf(date);
}

std::uint32_t WithDueDate(std::uint32_t wordB, const Date& date) {
  return (wordB & kHalfBits) | EncodeHalf(date) << kDueShift;
}

bool TakeTask(std::string_view& bytes, FormatVersion version, RecordFields& task,
              TaskWords& words) {
  ByteReader in(bytes);
  if (version == FormatVersion::k50) {
    const EscapedWords escaped = DecodeEscapedWords(in);
    task.idWord1 = escaped[0];
    task.idWord2 = escaped[1];
    task.lastChange = static_cast<std::int32_t>(escaped[2]);
  }
  task.flags = in.U32();
  words.b = in.U32();
  words.c = in.U32();
  if (in.Short()) return false;
  bytes.remove_prefix(in.Position());
  return TakeTexts(bytes, task);
}

void EncodeTask(ByteWriter& out, FormatVersion version, const RecordFields& task,
                const TaskWords& words) {
  if (version == FormatVersion::k50) {
    EncodeEscapedWords(
        out, {task.idWord1, task.idWord2, static_cast<std::uint32_t>(task.lastChange), 0});
  }
  out.U32(task.flags);
  out.U32(words.b);
  out.U32(words.c);
  EncodeTexts(out, task);
}

}  // namespace pw::calltask
