#include "calltask/record_format.h"

#include <algorithm>

#include "calltask/frame_format.h"

namespace pw::calltask {
namespace {

constexpr char kSubjectEnd = '\x7F';
constexpr char kRecordEnd = kEmptySlot;
constexpr char kTildeStandIn = '\x10';

constexpr std::uint32_t kFirstShift = 7;

std::string ReadText(std::string_view stored) {
  std::string text(stored);
  std::replace(text.begin(), text.end(), kTildeStandIn, '~');
  return text;
}

// What was searched in vain has been read.
bool Exhaust(std::string_view& bytes) {
  bytes = {};
  return false;
}

}  // namespace

EscapedWords DecodeEscapedWords(ByteReader& in) {
  const std::uint32_t mask = in.U32();
  EscapedWords words;
  std::uint32_t shift = kFirstShift;
  for (std::uint32_t& word : words) {
    word = (in.U32() & ~kTopBits) | ((mask << shift) & kTopBits);
    --shift;
  }
  return words;
}

void EncodeEscapedWords(ByteWriter& out, const EscapedWords& words) {
  std::uint32_t mask = kTopBits;
  std::uint32_t shift = kFirstShift;
  for (const std::uint32_t word : words) {
    mask |= (word & kTopBits) >> shift;
    --shift;
  }
  out.U32(mask);
  for (const std::uint32_t word : words) out.U32(word | kTopBits);
}

bool TakeTexts(std::string_view& bytes, RecordFields& record) {
  constexpr std::array<char, 2> kEnds = {kSubjectEnd, kRecordEnd};
  const std::size_t subjectEnd = bytes.find_first_of({kEnds.data(), kEnds.size()});
  if (subjectEnd == std::string_view::npos) return Exhaust(bytes);
  record.subject = ReadText(bytes.substr(0, subjectEnd));
  if (subjectEnd != 0) bytes.remove_prefix(subjectEnd + 1);

  const std::size_t noteEnd = bytes.find(kRecordEnd);
  if (noteEnd == std::string_view::npos) return Exhaust(bytes);
  record.note = ReadText(bytes.substr(0, noteEnd));
  bytes.remove_prefix(noteEnd + 1);
  return true;
}

void EncodeTexts(ByteWriter& out, const RecordFields& record) {
  out.Bytes(record.subject);
  out.U8(kSubjectEnd);
  out.Bytes(record.note);
  out.U8(kRecordEnd);
}

void MakeStorable(std::string& text) {
  std::replace(text.begin(), text.end(), kSubjectEnd, ' ');
  std::replace(text.begin(), text.end(), kRecordEnd, ' ');
}

}  // namespace pw::calltask
