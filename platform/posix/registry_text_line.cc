#include "platform/posix/registry_text_line.h"

#include <optional>

#include "base/cursor.h"
#include "base/hex.h"
#include "base/text.h"

namespace pw {
namespace {

constexpr std::size_t kLineWidth = 80;

// One to `limit` digits; the next character isn't one.
std::optional<std::uint32_t> TakeHex(std::string_view& text, std::size_t limit) {
  std::uint32_t number = 0;
  std::size_t count = 0;
  for (; count < text.size(); ++count) {
    const int digit = HexDigit(text[count]);
    if (digit < 0) break;
    if (count == limit) return std::nullopt;
    number = number * 16 + static_cast<std::uint32_t>(digit);
  }
  text.remove_prefix(count);
  return count == 0 ? std::nullopt : std::optional(number);
}

bool Take(std::string_view& text, std::string_view word) {
  if (!EqualIgnoringCase(text.substr(0, word.size()), word)) return false;
  text.remove_prefix(word.size());
  return true;
}

// Whether the text was quoted well; it comes without its quotation marks and escapes.
bool TakeQuoted(std::string_view& text, std::string& out) {
  if (!Take(text, "\"")) return false;
  while (!text.empty()) {
    const char c = text.front();
    text.remove_prefix(1);
    if (c == '"') return true;
    if (c != '\\') {
      out.push_back(c);
      continue;
    }
    if (text.empty() || (text.front() != '\\' && text.front() != '"')) return false;
    out.push_back(text.front());
    text.remove_prefix(1);
  }
  return false;
}

bool TakeName(std::string_view& text, std::string& name) {
  text = WithoutRegistryBlanks(text);
  return Take(text, "@") || TakeQuoted(text, name);
}

bool TakeEquals(std::string_view& text) {
  text = WithoutRegistryBlanks(text);
  if (!Take(text, "=")) return false;
  text = WithoutRegistryBlanks(text);
  return true;
}

// Blanks, and each "\" that ends a line together with the line end.
void SkipBlanksAndLineEnds(std::string_view& text) {
  for (;;) {
    text = WithoutRegistryBlanks(text);
    if (text.empty() || text.front() != '\\') return;
    const std::string_view behind = WithoutRegistryBlanks(text.substr(1));
    if (behind.empty() || behind.front() != '\n') return;
    text = behind.substr(1);
  }
}

bool TakeBytes(std::string_view& text, std::string& out) {
  SkipBlanksAndLineEnds(text);
  if (text.empty() || HexDigit(text.front()) < 0) return true;
  for (;;) {
    const auto byte = TakeHex(text, 2);
    if (!byte) return false;
    out.push_back(static_cast<char>(*byte));
    const std::string_view behind = text;
    SkipBlanksAndLineEnds(text);
    if (!Take(text, ",")) {
      text = behind;
      return true;
    }
    SkipBlanksAndLineEnds(text);
  }
}

constexpr bool IsText(RegistryType type) {
  return type == RegistryType::kText || type == RegistryType::kExpandableText;
}

// What is wrong, or null.
const char* DecodeBytes(RegistryType type, std::string bytes, RegistryVersion version,
                        RegistryValue& value) {
  value = {type, std::move(bytes)};
  if (!IsText(type)) return nullptr;
  if (version == RegistryVersion::k5) {
    if (value.data.size() % 2 != 0) return "the text has half a character at its end";
    value.data = Utf16ToCodePage(value.data);
  }
  if (!value.data.empty() && value.data.back() == '\0') value.data.pop_back();
  return nullptr;
}

const char* TakeTypedBytes(std::string_view& text, RegistryVersion version, RegistryValue& value) {
  std::uint32_t type = static_cast<std::uint32_t>(RegistryType::kBinary);
  if (Take(text, "(")) {
    const auto number = TakeHex(text, 8);
    if (!number || !Take(text, ")")) return "the type in brackets is no hexadecimal number";
    type = *number;
  }
  if (!Take(text, ":")) return "a colon is missing behind the type";
  std::string bytes;
  if (!TakeBytes(text, bytes)) return "the bytes aren't hexadecimal numbers with commas between";
  return DecodeBytes(static_cast<RegistryType>(type), std::move(bytes), version, value);
}

const char* TakeData(std::string_view& text, const RegistryFormat& format,
                     RegistryValueLine& line) {
  if (Take(text, "-")) {
    line.deletes = true;
    return nullptr;
  }
  if (Take(text, "dword:")) {
    const auto number = TakeHex(text, 8);
    if (!number) return "the number isn't one to eight hexadecimal digits";
    line.value = NumberValue(*number);
    return nullptr;
  }
  if (Take(text, "hex")) return TakeTypedBytes(text, format.version, line.value);
  std::string quoted;
  if (text.empty() || text.front() != '"') return "the value is of no known kind";
  if (!TakeQuoted(text, quoted)) {
    return "the text isn't closed, or has a backslash that isn't doubled";
  }
  line.value = TextValue(InnerToCodePage(quoted, format.encoding));
  return nullptr;
}

bool EndsInBackslash(std::string_view line) {
  while (!line.empty() && (IsRegistryBlank(line.back()) || line.back() == '\n')) {
    line.remove_suffix(1);
  }
  return !line.empty() && line.back() == '\\';
}

// Whether bytes stand in the line and go on in the next. A backslash in a comment doesn't count.
bool OpensBytes(std::string_view line) {
  std::string name;
  return EndsInBackslash(line) && TakeName(line, name) && TakeEquals(line) && Take(line, "hex") &&
         line.find(';') == std::string_view::npos;
}

// Whether a line can only be more bytes, with a comment behind them or not.
bool ContinuesBytes(std::string_view line) {
  bool anything = false;
  for (const char c : line) {
    if (c == ';') break;
    if (IsRegistryBlank(c) || c == '\n') continue;
    if (c != ',' && c != '\\' && HexDigit(c) < 0) return false;
    anything = true;
  }
  return anything;
}

std::size_t FirstLineSize(std::string_view text) {
  const std::size_t end = text.find('\n');
  return end == std::string_view::npos ? text.size() : end + 1;
}

std::string Quoted(std::string_view text, RegistryEncoding encoding) {
  std::string out = "\"";
  for (const char c : CodePageToInner(text, encoding)) {
    if (c == '"' || c == '\\') out.push_back('\\');
    out.push_back(c);
  }
  out.push_back('"');
  return out;
}

std::string BytesOf(const RegistryValue& value, RegistryVersion version) {
  if (!IsText(value.type)) return value.data;
  const std::string text = value.data + '\0';
  return version == RegistryVersion::k5 ? CodePageToUtf16(text) : text;
}

}  // namespace

std::string_view WithoutRegistryBlanks(std::string_view text) {
  while (!text.empty() && IsRegistryBlank(text.front())) text.remove_prefix(1);
  return text;
}

std::string_view TakeRegistryLine(std::string_view& text) {
  std::size_t size = FirstLineSize(text);
  bool goesOn = OpensBytes(text.substr(0, size));
  while (goesOn) {
    const std::string_view next = text.substr(size, FirstLineSize(text.substr(size)));
    if (!ContinuesBytes(next)) break;
    size += next.size();
    goesOn = EndsInBackslash(next) && next.find(';') == std::string_view::npos;
  }
  const std::string_view line = text.substr(0, size);
  text.remove_prefix(size);
  return line;
}

RegistryValueLine ParseRegistryValue(std::string_view line, const RegistryFormat& format) {
  RegistryValueLine parsed;
  const std::string_view body = line.ends_with('\n') ? line.substr(0, line.size() - 1) : line;
  std::string_view rest = body;
  std::string name;
  if (!TakeName(rest, name)) {
    parsed.complaint = "the name isn't closed, or has a backslash that isn't doubled";
    return parsed;
  }
  if (!TakeEquals(rest)) {
    parsed.complaint = "no \"=\" stands behind the name";
    return parsed;
  }
  parsed.nameFits = FitsCodePage(name, format.encoding);
  parsed.name = InnerToCodePage(name, format.encoding);
  parsed.dataStart = body.size() - rest.size();
  parsed.complaint = TakeData(rest, format, parsed);
  if (parsed.complaint != nullptr) return parsed;
  parsed.dataEnd = body.size() - rest.size();
  rest = WithoutRegistryBlanks(rest);
  if (!rest.empty() && rest.front() != ';') parsed.complaint = "more stands behind the value";
  return parsed;
}

std::string FormatRegistryName(std::string_view name, const RegistryFormat& format) {
  return (name.empty() ? "@" : Quoted(name, format.encoding)) + "=";
}

std::string FormatRegistryData(const RegistryValue& value, const RegistryFormat& format,
                               std::size_t column) {
  if (value.type == RegistryType::kText && IsRegistryLine(value.data)) {
    return Quoted(value.data, format.encoding);
  }
  if (value.type == RegistryType::kNumber && value.data.size() == 4) {
    return Format("dword:%08x", ByteReader(value.data).U32());
  }
  std::string out = value.type == RegistryType::kBinary
                        ? "hex:"
                        : Format("hex(%x):", static_cast<std::uint32_t>(value.type));
  column += out.size();
  const std::string bytes = BytesOf(value, format.version);
  for (std::size_t i = 0; i < bytes.size(); ++i) {
    // Room for the byte, the comma behind it and the backslash.
    if (i != 0 && column + 4 > kLineWidth) {
      out += "\\" + format.lineEnd + "  ";
      column = 2;
    }
    out += Format("%02x", static_cast<unsigned>(static_cast<unsigned char>(bytes[i])));
    if (i + 1 < bytes.size()) out.push_back(',');
    column += 3;
  }
  return out;
}

}  // namespace pw
