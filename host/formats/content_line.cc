#include "host/formats/content_line.h"

#include <algorithm>

#include "base/text.h"

namespace pw {
namespace {

constexpr std::size_t kLineLength = 75;
constexpr std::string_view kByteOrderMark = "\xEF\xBB\xBF";
constexpr std::string_view kQuotedPrintable = "quoted-printable";

constexpr bool IsWordCharacter(char c) {
  const unsigned char lower = AsciiLower(c);
  return (lower >= 'a' && lower <= 'z') || (c >= '0' && c <= '9') || c == '-' || c == '_';
}

constexpr bool IsContinuation(char c) {
  return (static_cast<unsigned char>(c) & 0xC0) == 0x80;
}

// The longest start of the text of at most `limit` bytes that ends between two characters. Bytes
// that are no UTF-8 are cut anywhere.
std::size_t FittingLength(std::string_view text, std::size_t limit) {
  if (text.size() <= limit) return text.size();
  std::size_t length = limit;
  while (length > limit - 4 && IsContinuation(text[length])) --length;
  return IsContinuation(text[length]) ? limit : length;
}

void AppendFolded(std::string& out, std::string_view text) {
  std::size_t length = FittingLength(text, kLineLength);
  out += text.substr(0, length);
  for (text.remove_prefix(length); !text.empty(); text.remove_prefix(length)) {
    length = FittingLength(text, kLineLength - 1);
    out += "\r\n ";
    out += text.substr(0, length);
  }
  out += "\r\n";
}

// Quotes and line breaks can't stand in a parameter, not even quoted: a caret stands for them.
void AppendParameterValue(std::string& out, std::string_view value) {
  const bool quoted = value.find_first_of(",;:") != std::string_view::npos;
  if (quoted) out += '"';
  for (const char c : value) {
    if (c == '\n') {
      out += "^n";
    } else if (c == '"') {
      out += "^'";
    } else if (c == '^') {
      out += "^^";
    } else {
      out += c;
    }
  }
  if (quoted) out += '"';
}

// An unknown caret sequence stands for itself.
std::string DecodeCarets(std::string_view text) {
  std::string value;
  value.reserve(text.size());
  for (std::size_t i = 0; i < text.size(); ++i) {
    const char next = text[i] == '^' && i + 1 < text.size() ? text[i + 1] : '\0';
    const bool escape = next == 'n' || next == '\'' || next == '^';
    if (escape) ++i;
    value += !escape ? text[i] : next == 'n' ? '\n' : next == '\'' ? '"' : '^';
  }
  return value;
}

void AppendParameter(std::string& out, const ContentParameter& parameter) {
  out += ';';
  out += parameter.name;
  char separator = '=';
  for (const std::string& value : parameter.values) {
    out += separator;
    AppendParameterValue(out, value);
    separator = ',';
  }
}

// Takes one unfolded line apart. Each step returns what is wrong, empty if nothing is.
class LineParser {
 public:
  LineParser(std::string_view text, ContentLine& line) : rest(text), line(line) {}

  std::string_view Parse() {
    line.name = Word();
    if (!line.name.empty() && Take('.')) {
      line.group = std::move(line.name);
      line.name = Word();
    }
    if (line.name.empty()) return "no property name";
    while (Take(';')) {
      const std::string_view problem = Parameter();
      if (!problem.empty()) return problem;
    }
    if (rest.empty()) return "no colon before the value";
    if (!Take(':')) return "a character before the colon that can't stand there";
    line.value = rest;
    return {};
  }

 private:
  std::string_view Parameter() {
    ContentParameter& parameter = line.parameters.emplace_back();
    parameter.name = Word();
    if (parameter.name.empty()) return "a parameter without a name";
    if (!Take('=')) return {};
    do {
      std::string_view text;
      if (!ParameterText(text)) return "a quoted parameter that doesn't end";
      parameter.values.push_back(DecodeCarets(text));
    } while (Take(','));
    return {};
  }

  bool ParameterText(std::string_view& text) {
    if (!Take('"')) {
      text = TakeFront(std::min(rest.find_first_of(",;:"), rest.size()));
      return true;
    }
    const std::size_t end = rest.find('"');
    if (end == std::string_view::npos) return false;
    text = TakeFront(end);
    return Take('"');
  }

  std::string Word() {
    std::size_t length = 0;
    while (length < rest.size() && IsWordCharacter(rest[length])) ++length;
    return std::string(TakeFront(length));
  }

  bool Take(char c) {
    if (rest.empty() || rest.front() != c) return false;
    rest.remove_prefix(1);
    return true;
  }

  std::string_view TakeFront(std::size_t length) {
    const std::string_view front = rest.substr(0, length);
    rest.remove_prefix(length);
    return front;
  }

  std::string_view rest;
  ContentLine& line;
};

// Whether the line's head, up to its first colon, tells of quoted-printable.
bool SaysQuotedPrintable(std::string_view text) {
  const std::string head = AsciiLower(text.substr(0, text.find(':')));
  return head.find(kQuotedPrintable) != std::string::npos;
}

bool IsFold(char c) {
  return c == ' ' || c == '\t';
}

}  // namespace

const ContentParameter* ContentLine::Find(std::string_view parameter) const {
  const auto found =
      std::find_if(parameters.begin(), parameters.end(), [&](const ContentParameter& candidate) {
        return EqualIgnoringCase(candidate.name, parameter);
      });
  return found == parameters.end() ? nullptr : &*found;
}

void AppendContentLine(std::string& out, const ContentLine& line) {
  std::string text;
  if (!line.group.empty()) text += line.group + '.';
  text += line.name;
  for (const ContentParameter& parameter : line.parameters) AppendParameter(text, parameter);
  text += ':';
  for (const char c : line.value) {
    if (c == '\n') {
      text += "\\n";
    } else {
      text += c;
    }
  }
  AppendFolded(out, text);
}

ContentLineReader::ContentLineReader(std::string_view text, SoftBreaks softBreaks)
    : rest(text), softBreaks(softBreaks) {
  if (rest.substr(0, kByteOrderMark.size()) == kByteOrderMark) {
    rest.remove_prefix(kByteOrderMark.size());
  }
}

ContentLineReader::Result ContentLineReader::Next() {
  do {
    if (rest.empty()) {
      number = taken;
      return Result::kEnd;
    }
    Unfold();
  } while (unfolded.empty());
  line = ContentLine();
  problem = LineParser(unfolded, line).Parse();
  return problem.empty() ? Result::kLine : Result::kDamaged;
}

std::string_view ContentLineReader::TakePhysicalLine() {
  ++taken;
  const std::size_t end = std::min(rest.find('\n'), rest.size());
  std::string_view physical = rest.substr(0, end);
  rest.remove_prefix(std::min(end + 1, rest.size()));
  if (!physical.empty() && physical.back() == '\r') physical.remove_suffix(1);
  return physical;
}

void ContentLineReader::Unfold() {
  unfolded = TakePhysicalLine();
  number = taken;
  const bool soft = softBreaks == SoftBreaks::kQuotedPrintable && SaysQuotedPrintable(unfolded);
  while (!rest.empty()) {
    if (soft && !unfolded.empty() && unfolded.back() == '=') {
      unfolded.pop_back();
      unfolded += TakePhysicalLine();
    } else if (IsFold(rest.front())) {
      unfolded += TakePhysicalLine().substr(1);
    } else {
      return;
    }
  }
}

}  // namespace pw
