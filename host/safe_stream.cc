#include "host/safe_stream.h"

#include <algorithm>
#include <cstddef>

#include "base/codepage.h"
#include "host/text_table.h"

namespace pw {
namespace {

bool Continues(char byte) {
  return (static_cast<unsigned char>(byte) & 0xC0) == 0x80;
}

// As its first byte tells.
std::size_t LengthOf(char first) {
  const auto byte = static_cast<unsigned char>(first);
  if (byte < 0xC0 || byte >= 0xF8) return 1;
  if (byte < 0xE0) return 2;
  return byte < 0xF0 ? 3 : 4;
}

// Whether the text is the beginning of one character, and not all of it.
bool IsCut(std::string_view text) {
  return text.size() < LengthOf(text.front()) &&
         std::all_of(text.begin() + 1, text.end(), Continues);
}

}  // namespace

SafeBuffer::int_type SafeBuffer::overflow(int_type character) {
  if (traits_type::eq_int_type(character, traits_type::eof())) return 0;
  const char byte = traits_type::to_char_type(character);
  xsputn(&byte, 1);
  return character;
}

std::streamsize SafeBuffer::xsputn(const char* text, std::streamsize size) {
  const std::string all = held + std::string(text, static_cast<std::size_t>(size));
  held.clear();
  std::string safe;
  std::string_view rest = all;
  while (!rest.empty()) {
    if (IsCut(rest)) {
      held = rest;
      break;
    }
    const auto character = TakeUtf8(rest);
    const bool isKept = character == U'\n' || character == U'\t' || !IsControl(character);
    if (isKept) {
      AppendUtf8(safe, *character);
    } else {
      safe += '?';
    }
  }
  target << safe;
  return target ? size : 0;
}

int SafeBuffer::sync() {
  target.flush();
  return target ? 0 : -1;
}

SafeStream::SafeStream(std::ostream& target) : std::ostream(nullptr), buffer(target) {
  rdbuf(&buffer);
  setf(std::ios_base::unitbuf);
}

}  // namespace pw
