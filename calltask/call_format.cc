#include "calltask/call_format.h"

namespace pw::calltask {
namespace {

constexpr std::size_t kLeastLeft30 = 12;

}  // namespace

bool IsCallDueDate(const Date& date) {
  return date.year > kNoCallDueDate.year && date.month != 0 && date.day != 0;
}

Date DecodeCallDueDate(std::uint32_t word) {
  if (word == 0) return kNoCallDueDate;
  return {static_cast<std::int32_t>(word >> 16) + 1900,
          static_cast<std::int32_t>((word >> 8) & 0xFF) + 1,
          static_cast<std::int32_t>(word & 0xFF)};
}

std::uint32_t EncodeCallDueDate(const Date& date) {
  if (!IsCallDueDate(date)) return 0;
  const auto part = [](std::int32_t value) { return static_cast<std::uint32_t>(value); };
  return part(date.year - 1900) << 16 | (part(date.month - 1) & 0xFF) << 8 |
         (part(date.day) & 0xFF);
}

bool TakeCall(std::string_view& bytes, FormatVersion version, RecordFields& call, Date& due) {
  ByteReader in(bytes);
  if (version == FormatVersion::k30) {
    if (bytes.size() < kLeastLeft30) return false;
  } else {
    const EscapedWords words = DecodeEscapedWords(in);
    call.idWord1 = words[0];
    call.idWord2 = words[1];
    call.lastChange = static_cast<std::int32_t>(words[2]);
    due = DecodeCallDueDate(words[3]);
  }
  call.flags = in.U32();
  if (in.Short()) return false;
  bytes.remove_prefix(in.Position());
  return TakeTexts(bytes, call);
}

void EncodeCall(ByteWriter& out, FormatVersion version, const RecordFields& call, const Date& due) {
  if (version == FormatVersion::k50) {
    EncodeEscapedWords(out, {call.idWord1, call.idWord2,
                             static_cast<std::uint32_t>(call.lastChange), EncodeCallDueDate(due)});
  }
  out.U32(call.flags);
  EncodeTexts(out, call);
}

}  // namespace pw::calltask
