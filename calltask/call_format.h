#pragma once

#include <cstdint>
#include <string_view>

#include "base/cursor.h"
#include "calltask/frame_format.h"
#include "calltask/record_format.h"

// The records of the call file, "CALL.WMW". The date of a call is that of the block it stands in.
namespace pw::calltask {

inline constexpr Magics kCallMagics = {"WMWCALL20", "WMWCALL50"};

// Bit of a call's flags; those that no name stands for are carried.
inline constexpr std::uint32_t kHighPriority = 1U << 20;

// A call's due date while it has none.
inline constexpr Date kNoCallDueDate = {1900, 1, 0};

// Due date word: (year - 1900) << 16 | (month - 1) << 8 | day, or 0 for none. No date before 1901,
// nor one without month or day, can be told by it.
bool IsCallDueDate(const Date& date);
Date DecodeCallDueDate(std::uint32_t word);
std::uint32_t EncodeCallDueDate(const Date& date);

// Call, version 30:
//
//   offset  width  field       meaning
//   0       4      flags
//   4              texts       subject and note
//
// version 50:
//
//   offset  width  field       meaning
//   0       4      mask        of the four words behind it
//   4       4      idWord1
//   8       4      idWord2
//   12      4      lastChange
//   16      4      due
//   20      4      flags
//   24             texts
//
// Takes a call off the front of a block's bytes. False where there is no whole one: nothing is then
// to be made of what follows. At version 30 the organiser also refuses one that begins in the last
// 11 bytes of its block, whole or not. What a version doesn't have is left alone.
bool TakeCall(std::string_view& bytes, FormatVersion version, RecordFields& call, Date& due);
void EncodeCall(ByteWriter& out, FormatVersion version, const RecordFields& call, const Date& due);

}  // namespace pw::calltask
