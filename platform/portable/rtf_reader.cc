#include "platform/portable/rtf_reader.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <limits>
#include <vector>

#include "base/codepage.h"
#include "base/hex.h"
#include "platform/portable/rtf_keywords.h"

namespace pw::rtf {
namespace {

constexpr std::string_view kBegin = "{\\rtf";
constexpr std::string_view kLineBreak = "\r\n";

bool IsLetter(char c) {
  return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z');
}
bool IsDigit(char c) {
  return c >= '0' && c <= '9';
}

// Bytes that end a run of text.
constexpr std::array<bool, 256> Specials() {
  std::array<bool, 256> special{};
  for (const char c : {'{', '}', '\\', '\r', '\n'}) special[static_cast<unsigned char>(c)] = true;
  return special;
}
constexpr auto kSpecials = Specials();

// What holds within a group, and again behind the groups within it.
struct Group {
  std::int32_t fallback = 1;  // characters behind one by its number
  bool isHidden = false;

  friend bool operator==(const Group&, const Group&) = default;
};

// So many groups, each within the one before it, in which the same holds.
struct NestedGroups {
  Group group;
  std::size_t count = 0;
};

class Reader {
 public:
  explicit Reader(std::string_view document) : rest(document) {}

  std::string Read() {
    while (!rest.empty() && !isAtEnd) Step();
    return text.substr(0, text.find('\0'));
  }

 private:
  void Step() {
    const char c = rest.front();
    if (c == '{') {
      rest.remove_prefix(1);
      Open();
    } else if (c == '}') {
      rest.remove_prefix(1);
      Close();
    } else if (c == '\\') {
      rest.remove_prefix(1);
      TakeControl();
    } else if (c == '\r' || c == '\n') {
      rest.remove_prefix(1);
    } else {
      TakeRun();
    }
  }

  void Open() {
    toSkip = 0;
    isStarred = false;
    if (dropped > 0) {
      ++dropped;
      return;
    }
    if (outer.empty() || !(outer.back().group == group)) outer.push_back({group, 0});
    ++outer.back().count;
  }

  // The end of the first group is that of the document, so that there always is one to close.
  void Close() {
    toSkip = 0;
    isStarred = false;
    if (dropped > 1) {
      --dropped;
      return;
    }
    dropped = 0;
    group = outer.back().group;
    if (--outer.back().count == 0) outer.pop_back();
    isAtEnd = outer.empty();
  }

  void TakeRun() {
    isStarred = false;
    std::size_t size = 1;
    while (size < rest.size() && !kSpecials[static_cast<unsigned char>(rest[size])]) ++size;
    const std::size_t skipped = std::min<std::size_t>(size, static_cast<std::size_t>(toSkip));
    toSkip -= static_cast<std::int32_t>(skipped);
    Append(rest.substr(skipped, size - skipped));
    rest.remove_prefix(size);
  }

  void TakeControl() {
    if (rest.empty()) return;
    if (IsLetter(rest.front())) return TakeWord();
    const char symbol = rest.front();
    rest.remove_prefix(1);
    isStarred = symbol == '*';
    if (isStarred) return;
    if (symbol == '\'') return TakeByte();
    if (IsSkipped()) return;
    TakeSymbol(symbol);
  }

  void TakeSymbol(char symbol) {
    switch (symbol) {
      case '\r':
      case '\n':
        EndParagraph();
        break;
      case '\t':
        Append('\t');
        break;
      case '~':
        Append('\xA0');
        break;
      case '-':
        Append('\xAD');
        break;
      case '_':
        Append('-');
        break;
      case '\\':
      case '{':
      case '}':
        Append(symbol);
        break;
      default:
        break;
    }
  }

  // Two digits; what isn't one stands for itself.
  void TakeByte() {
    int value = 0;
    std::size_t digits = 0;
    for (; digits < 2 && digits < rest.size() && HexDigit(rest[digits]) >= 0; ++digits) {
      value = value * 16 + HexDigit(rest[digits]);
    }
    rest.remove_prefix(digits);
    if (IsSkipped() || digits == 0) return;
    Append(static_cast<char>(value));
  }

  void TakeWord() {
    std::size_t size = 1;
    while (size < rest.size() && IsLetter(rest[size])) ++size;
    const Keyword keyword = FindKeyword(rest.substr(0, size));
    rest.remove_prefix(size);
    const bool hasNumber = TakeNumber();
    if (!rest.empty() && rest.front() == ' ') rest.remove_prefix(1);
    const bool isIgnorable = isStarred;
    isStarred = false;
    // Data are passed over wherever they stand.
    if (keyword.meaning == Meaning::kBinary) return TakeBinary(hasNumber);
    if (IsSkipped()) return;
    const bool isUnknown = isIgnorable && keyword.meaning == Meaning::kNothing;
    if (isUnknown || keyword.meaning == Meaning::kDropped) return Drop();
    Obey(keyword, hasNumber);
  }

  // Its value is cut to 32 bits.
  bool TakeNumber() {
    using Limits = std::numeric_limits<std::int32_t>;
    const bool isNegative = rest.size() > 1 && rest[0] == '-' && IsDigit(rest[1]);
    std::size_t at = isNegative ? 1 : 0;
    std::int64_t value = 0;
    const std::size_t begin = at;
    for (; at < rest.size() && IsDigit(rest[at]); ++at) {
      value = std::min<std::int64_t>(value * 10 + (rest[at] - '0'), Limits::max());
    }
    if (at == begin) return false;
    rest.remove_prefix(at);
    number = static_cast<std::int32_t>(isNegative ? -value : value);
    return true;
  }

  void TakeBinary(bool hasNumber) {
    const auto size = static_cast<std::size_t>(hasNumber ? std::max(number, 0) : 0);
    rest.remove_prefix(std::min(size, rest.size()));
    if (toSkip > 0) --toSkip;
  }

  // The rest of the group.
  void Drop() { dropped = 1; }

  void Obey(const Keyword& keyword, bool hasNumber) {
    switch (keyword.meaning) {
      case Meaning::kText:
        Append(keyword.text);
        break;
      case Meaning::kParagraphEnd:
        EndParagraph();
        break;
      case Meaning::kLineEnd:
        Append(kLineBreak);
        break;
      case Meaning::kHidden:
        group.isHidden = !hasNumber || number != 0;
        break;
      case Meaning::kPlain:
        group.isHidden = false;
        break;
      case Meaning::kUnicode:
        if (hasNumber) AppendUnicode();
        break;
      case Meaning::kFallback:
        group.fallback = hasNumber ? std::max(number, 0) : 1;
        break;
      default:
        break;
    }
  }

  // The number is that of a 16-bit unit, with or without a sign.
  void AppendUnicode() {
    const auto unit = static_cast<std::uint16_t>(number);
    const auto byte = UnicodeToCodePage(unit);
    Append(byte ? static_cast<char>(*byte) : '?');
    toSkip = group.fallback;
  }

  // Whether what was just taken isn't to be shown; it counts as one of the characters that stand
  // behind one by its number.
  bool IsSkipped() {
    if (dropped > 0) return true;
    if (toSkip == 0) return false;
    --toSkip;
    return true;
  }

  void EndParagraph() {
    if (group.isHidden) return;
    if (isParagraphEnded) text += kLineBreak;
    isParagraphEnded = true;
  }

  void Append(std::string_view piece) {
    if (dropped > 0 || group.isHidden || piece.empty()) return;
    if (isParagraphEnded) text += kLineBreak;
    isParagraphEnded = false;
    text += piece;
  }
  void Append(char c) { Append(std::string_view(&c, 1)); }

  std::string_view rest;
  std::string text;
  Group group;
  std::vector<NestedGroups> outer;
  std::size_t dropped = 0;  // how deep it is in a group that is left out
  std::int32_t toSkip = 0;  // characters that stand behind one by its number
  std::int32_t number = 0;  // of the control word
  bool isStarred = false;   // the control word that follows is one that needn't be known
  bool isParagraphEnded = false;
  bool isAtEnd = false;
};

}  // namespace

std::string PlainText(std::string_view document) {
  if (document.substr(0, kBegin.size()) == kBegin) return Reader(document).Read();
  return std::string(document.substr(0, document.find('\0')));
}

}  // namespace pw::rtf
