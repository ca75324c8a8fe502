#include "host/formats/vcard_text.h"

#include <cstddef>
#include <cstdint>

#include "base/codepage.h"
#include "base/text.h"
#include "host/formats/transfer_encoding.h"

namespace pw {
namespace {

constexpr std::string_view kUidStart = "pairwise-";
constexpr std::size_t kHashDigits = 16;

// FNV-1a. Only has to tell one owner's few cardfiles apart, and never to change.
std::uint64_t Hash(std::string_view text) {
  std::uint64_t hash = 0xCBF29CE484222325U;
  for (const char c : text) {
    hash ^= static_cast<unsigned char>(c);
    hash *= 0x100000001B3U;
  }
  return hash;
}

// Whether each "9" of the pattern meets a digit and each other character itself.
bool Matches(std::string_view text, std::string_view pattern) {
  if (text.size() != pattern.size()) return false;
  for (std::size_t i = 0; i < text.size(); ++i) {
    const bool digit = text[i] >= '0' && text[i] <= '9';
    if (pattern[i] == '9' ? !digit : text[i] != pattern[i]) return false;
  }
  return true;
}

int DaysOfMonth(int year, int month) {
  constexpr int kDays[] = {31, 28, 31, 30, 31, 30, 31, 31, 30, 31, 30, 31};
  const bool leap = (year % 4 == 0 && year % 100 != 0) || year % 400 == 0;
  return kDays[month - 1] + (month == 2 && leap ? 1 : 0);
}

}  // namespace

bool IsPlainText(std::string_view text) {
  while (!text.empty()) {
    if (text.substr(0, 2) == "\r\n") {
      text.remove_prefix(2);
      continue;
    }
    const auto character = TakeUtf8(text);
    if (!character) return false;
    if ((*character < ' ' && *character != '\t') || *character == 0x7F) return false;
  }
  return true;
}

std::string WithLineFeeds(std::string_view text) {
  std::string result;
  result.reserve(text.size());
  for (std::size_t i = 0; i < text.size(); ++i) {
    const bool lineBreak = text[i] == '\r' && i + 1 < text.size() && text[i + 1] == '\n';
    if (!lineBreak) result += text[i];
  }
  return result;
}

std::string WithLineBreaks(std::string_view text) {
  std::string result;
  result.reserve(text.size());
  for (const char c : text) {
    if (c == '\n' && (result.empty() || result.back() != '\r')) result += '\r';
    result += c;
  }
  return result;
}

std::string MakeCardUid(std::string_view fileIdentity, std::string_view id) {
  std::string uid(kUidStart);
  const std::uint64_t hash = Hash(fileIdentity);
  for (int shift = 60; shift >= 0; shift -= 4) uid += "0123456789abcdef"[hash >> shift & 0xF];
  uid += '-';
  return uid + EncodePercent(id);
}

std::string IdOfCardUid(std::string_view uid) {
  const std::size_t idStart = kUidStart.size() + kHashDigits + 1;
  if (uid.size() < idStart || uid.substr(0, kUidStart.size()) != kUidStart) return {};
  if (uid[idStart - 1] != '-') return {};
  return DecodePercent(uid.substr(idStart));
}

bool IsDate(std::string_view text) {
  if (!Matches(text, "9999-99-99")) return false;
  const int month = ParseLong(text.substr(5));
  const int day = ParseLong(text.substr(8));
  if (month < 1 || month > 12) return false;
  return day >= 1 && day <= DaysOfMonth(ParseLong(text), month);
}

bool IsStamp(std::string_view text) {
  if (text.size() != 19 || !IsDate(text.substr(0, 10))) return false;
  if (!Matches(text.substr(10), "T99:99:99")) return false;
  return ParseLong(text.substr(11)) < 24 && ParseLong(text.substr(14)) < 60 &&
         ParseLong(text.substr(17)) < 60;
}

}  // namespace pw
