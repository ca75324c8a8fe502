#pragma once

#include <cstdint>
#include <string_view>

namespace pw::rtf {

// What a control word of a rich text means for its plain text.
enum class Meaning : std::uint8_t {
  kNothing,       // layout, or unknown
  kText,          // stands for one byte
  kParagraphEnd,  // a line break where text follows
  kLineEnd,       // a line break
  kHidden,        // text is hidden from here on, or no longer for a parameter of 0
  kPlain,         // text has no formats from here on
  kUnicode,       // a character by its number
  kFallback,      // how many characters stand behind one by its number, for those who don't know it
  kBinary,        // so many bytes of data follow
  kDropped,       // the group has no text to show
};

struct Keyword {
  Meaning meaning = Meaning::kNothing;
  char text = 0;  // of `kText`
};

// Control words are told apart by letter case.
Keyword FindKeyword(std::string_view word);

}  // namespace pw::rtf
