#include "platform/portable/rtf_keywords.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <iterator>

namespace pw::rtf {
namespace {

struct Entry {
  std::string_view word;
  Keyword keyword;
};

// By their words, as they are searched for by their first letters.
constexpr Entry kKeywords[] = {
    {"bin", {Meaning::kBinary}},
    {"bullet", {Meaning::kText, '\x95'}},
    {"cell", {Meaning::kText, '\t'}},
    {"colortbl", {Meaning::kDropped}},
    {"column", {Meaning::kParagraphEnd}},
    {"emdash", {Meaning::kText, '\x97'}},
    {"emspace", {Meaning::kText, ' '}},
    {"endash", {Meaning::kText, '\x96'}},
    {"enspace", {Meaning::kText, ' '}},
    {"fldinst", {Meaning::kDropped}},
    {"fonttbl", {Meaning::kDropped}},
    {"footer", {Meaning::kDropped}},
    {"footerf", {Meaning::kDropped}},
    {"footerl", {Meaning::kDropped}},
    {"footerr", {Meaning::kDropped}},
    {"header", {Meaning::kDropped}},
    {"headerf", {Meaning::kDropped}},
    {"headerl", {Meaning::kDropped}},
    {"headerr", {Meaning::kDropped}},
    {"info", {Meaning::kDropped}},
    {"ldblquote", {Meaning::kText, '\x93'}},
    {"line", {Meaning::kLineEnd}},
    {"listtext", {Meaning::kDropped}},
    {"lquote", {Meaning::kText, '\x91'}},
    {"nestcell", {Meaning::kText, '\t'}},
    {"nestrow", {Meaning::kParagraphEnd}},
    {"nonshppict", {Meaning::kDropped}},
    {"object", {Meaning::kDropped}},
    {"page", {Meaning::kParagraphEnd}},
    {"par", {Meaning::kParagraphEnd}},
    {"pict", {Meaning::kDropped}},
    {"plain", {Meaning::kPlain}},
    {"pntext", {Meaning::kDropped}},
    {"pntxta", {Meaning::kDropped}},
    {"pntxtb", {Meaning::kDropped}},
    {"qmspace", {Meaning::kText, ' '}},
    {"rdblquote", {Meaning::kText, '\x94'}},
    {"row", {Meaning::kParagraphEnd}},
    {"rquote", {Meaning::kText, '\x92'}},
    {"sect", {Meaning::kParagraphEnd}},
    {"stylesheet", {Meaning::kDropped}},
    {"tab", {Meaning::kText, '\t'}},
    {"tc", {Meaning::kDropped}},
    {"u", {Meaning::kUnicode}},
    {"uc", {Meaning::kFallback}},
    {"v", {Meaning::kHidden}},
    {"xe", {Meaning::kDropped}},
};

static_assert(std::is_sorted(std::begin(kKeywords), std::end(kKeywords),
                             [](const Entry& a, const Entry& b) { return a.word < b.word; }));

constexpr std::size_t kLetters = 26;

// Where the words of each letter begin, and behind the last one where they end.
constexpr std::array<std::uint8_t, kLetters + 1> Begins() {
  std::array<std::uint8_t, kLetters + 1> begins{};
  std::size_t at = 0;
  for (std::size_t letter = 0; letter <= kLetters; ++letter) {
    while (at < std::size(kKeywords) &&
           static_cast<std::size_t>(kKeywords[at].word.front() - 'a') < letter) {
      ++at;
    }
    begins[letter] = static_cast<std::uint8_t>(at);
  }
  return begins;
}
constexpr auto kBegins = Begins();

}  // namespace

Keyword FindKeyword(std::string_view word) {
  const auto letter = static_cast<std::size_t>(word.front() - 'a');
  if (letter >= kLetters) return {};
  const Entry* end = kKeywords + kBegins[letter + 1];
  const Entry* found = std::find_if(kKeywords + kBegins[letter], end,
                                    [&](const Entry& entry) { return entry.word == word; });
  return found == end ? Keyword() : found->keyword;
}

}  // namespace pw::rtf
