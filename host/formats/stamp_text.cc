#include "host/formats/stamp_text.h"

#include <cstddef>

#include "base/text.h"

namespace pw {
namespace {

int DaysOfMonth(int year, int month) {
  constexpr int kDays[] = {31, 28, 31, 30, 31, 30, 31, 31, 30, 31, 30, 31};
  const bool leap = (year % 4 == 0 && year % 100 != 0) || year % 400 == 0;
  return kDays[month - 1] + (month == 2 && leap ? 1 : 0);
}

}  // namespace

bool HasForm(std::string_view text, std::string_view form) {
  if (text.size() != form.size()) return false;
  for (std::size_t i = 0; i < text.size(); ++i) {
    const bool digit = text[i] >= '0' && text[i] <= '9';
    if (form[i] == '9' ? !digit : text[i] != form[i]) return false;
  }
  return true;
}

bool IsDate(std::string_view text) {
  if (!HasForm(text, "9999-99-99")) return false;
  const int month = ParseLong(text.substr(5));
  const int day = ParseLong(text.substr(8));
  if (month < 1 || month > 12) return false;
  return day >= 1 && day <= DaysOfMonth(ParseLong(text), month);
}

bool IsStamp(std::string_view text) {
  if (text.size() != 19 || !IsDate(text.substr(0, 10))) return false;
  if (!HasForm(text.substr(10), "T99:99:99")) return false;
  return ParseLong(text.substr(11)) < 24 && ParseLong(text.substr(14)) < 60 &&
         ParseLong(text.substr(17)) < 60;
}

}  // namespace pw
