#include "host/formats/icalendar.h"

#include <algorithm>

#include "host/formats/stamp_text.h"
#include "host/formats/text_value.h"
#include "host/formats/transfer_encoding.h"

namespace pw {
namespace {

// Line breaks of any kind as line feeds, other control characters as blanks.
std::string Presentable(std::string_view text) {
  std::string result = WithLineFeeds(text);
  for (char& c : result) {
    const auto byte = static_cast<unsigned char>(c);
    if (c == '\r') c = '\n';
    if ((byte < ' ' && c != '\n' && c != '\t') || byte == 0x7F) c = ' ';
  }
  return result;
}

}  // namespace

void BeginCalendar(std::string& out) {
  AppendProperty(out, "BEGIN", "VCALENDAR");
  AppendProperty(out, "VERSION", "2.0");
  AppendProperty(out, "PRODID", "-//Pairwise//Organiser//EN");
}

void EndCalendar(std::string& out) {
  AppendProperty(out, "END", "VCALENDAR");
}

void AppendProperty(std::string& out, std::string_view name, std::string value,
                    std::vector<ContentParameter> parameters) {
  AppendContentLine(out, {{}, std::string(name), std::move(parameters), std::move(value)});
}

void AppendTextProperty(std::string& out, std::string_view name, std::string_view text) {
  if (text.empty()) return;
  AppendProperty(out, name, EscapeText(Presentable(text)));
  if (IsPlainText(text)) return;
  AppendProperty(out, std::string(kOwnPrefix) + std::string(name), EncodeBase64(text),
                 {{"ENCODING", {"BASE64"}}, {"VALUE", {"BINARY"}}});
}

void AppendDateProperty(std::string& out, std::string_view name, const std::string& date) {
  if (!IsDate(date)) {
    return AppendProperty(out, std::string(kOwnPrefix) + std::string(name), EscapeText(date));
  }
  std::string digits = date;
  digits.erase(std::remove(digits.begin(), digits.end(), '-'), digits.end());
  AppendProperty(out, name, std::move(digits), {{"VALUE", {"DATE"}}});
}

}  // namespace pw
