#include "platform/portable/rtf_writer.h"

namespace pw::rtf {
namespace {

constexpr const char* kDefaultFont = "Arial";
constexpr unsigned char kDelete = 0x7F;  // and behind it what isn't ASCII

void AppendHex(std::string& out, char c) {
  constexpr const char* kDigits = "0123456789abcdef";
  const auto byte = static_cast<unsigned char>(c);
  out += "\\'";
  out += kDigits[byte >> 4];
  out += kDigits[byte & 0xF];
}

// A byte that ends no line.
void AppendByte(std::string& out, char c) {
  const auto byte = static_cast<unsigned char>(c);
  if (c == '\t') {
    out += "\\tab ";
  } else if (c == '\\' || c == '{' || c == '}') {
    out += '\\';
    out += c;
  } else if (byte < ' ' || byte >= kDelete) {
    AppendHex(out, c);
  } else {
    out += c;
  }
}

// A semicolon ends a name in the table.
void AppendFontName(std::string& out, std::string_view name) {
  for (const char c : name.empty() ? std::string_view(kDefaultFont) : name) {
    if (c != ';' && c != '\r' && c != '\n') AppendByte(out, c);
  }
}

void AppendText(std::string& out, std::string_view text) {
  constexpr const char* kParagraphEnd = "\\par\r\n";
  for (std::size_t i = 0; i < text.size(); ++i) {
    const char c = text[i];
    if (c == '\r' && i + 1 < text.size() && text[i + 1] == '\n') continue;
    if (c == '\r' || c == '\n') {
      out += kParagraphEnd;
    } else {
      AppendByte(out, c);
    }
  }
  out += kParagraphEnd;
}

}  // namespace

std::optional<std::string> Document(std::string_view text, const RichTextFont& font,
                                    std::size_t limit) {
  // As a document is larger than its text, the text of one that is too large needn't be written.
  text = text.substr(0, text.find('\0'));
  if (text.size() > limit) return std::nullopt;
  std::string out = "{\\rtf1\\ansi\\ansicpg1252\\deff0{\\fonttbl{\\f0\\fnil\\fcharset";
  out += std::to_string(font.characterSet) + " ";
  AppendFontName(out, font.name);
  out += ";}}\r\n\\uc1\\pard\\plain\\f0\\fs" + std::to_string(font.halfPoints) + " ";
  AppendText(out, text);
  out += "}";
  if (out.size() > limit) return std::nullopt;
  return out;
}

}  // namespace pw::rtf
