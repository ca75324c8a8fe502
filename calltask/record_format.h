#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

#include "base/cursor.h"

// What a call and a task have in common in their files.
namespace pw::calltask {

// A date as the files have it, which may be none of the calendar's.
struct Date {
  std::int32_t year = 0;   // full
  std::int32_t month = 0;  // from 1
  std::int32_t day = 0;    // from 1

  friend bool operator==(const Date&, const Date&) = default;
};

// Every byte of a word in the files has its top bit set, which keeps the structural bytes out.
inline constexpr std::uint32_t kTopBits = 0x80808080;

// Bits of a call's flags and of a task's word A.
inline constexpr std::uint32_t kNoDueDate = 1U << 21;  // a call's is only ever cleared
inline constexpr std::uint32_t kCompleted = 1U << 22;
inline constexpr std::uint32_t kRecurring = 1U << 24;

struct RecordFields {
  std::uint32_t idWord1 = 0;  // the two words of a unique id
  std::uint32_t idWord2 = 0;
  std::int32_t lastChange = 0;     // in seconds since 1970 UTC
  std::uint32_t flags = kTopBits;  // of a call; word A of a task
  std::string subject;
  std::string note;
};

// Four words with their top bits gathered in a mask, before them.
//
//   offset  width  field  meaning
//   0       4      mask   the top bits of word i, from 0, shifted right by 7 - i; its own are set
//   4       16     words  each with all four top bits set
using EscapedWords = std::array<std::uint32_t, 4>;
EscapedWords DecodeEscapedWords(ByteReader& in);
void EncodeEscapedWords(ByteWriter& out, const EscapedWords& words);

// The texts that end a record.
//
//   texts := subject 0x7F note 0x09
//
// On reading, 0x10 stands for "~", and the organiser's way is kept where the grammar isn't: a
// subject may end in 0x09 too, and the note is what then follows; a record without a subject has
// the 0x7F as the first byte of its note.
//
// Takes the texts off the front of `bytes`. False where they don't end; nothing is left then.
bool TakeTexts(std::string_view& bytes, RecordFields& record);
void EncodeTexts(ByteWriter& out, const RecordFields& record);

// Puts blanks for what a record can't hold in a text, 0x7F and 0x09.
void MakeStorable(std::string& text);

}  // namespace pw::calltask
