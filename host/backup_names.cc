#include "host/backup_names.h"

#include <algorithm>
#include <ctime>

#include "base/text.h"

namespace pw {
namespace {

constexpr std::string_view kForm = "0000-00-00T00-00-00";
constexpr std::string_view kFormOfNumber = "-00";
constexpr std::int32_t kMostInASecond = 99;

// Whether there are digits just where the form has them, and else its own signs.
bool HasForm(std::string_view text, std::string_view form) {
  return text.size() == form.size() &&
         std::equal(text.begin(), text.end(), form.begin(), [](char c, char expected) {
           return expected == '0' ? c >= '0' && c <= '9' : c == expected;
         });
}

std::string NameOf(std::int64_t now) {
  const auto seconds = static_cast<std::time_t>(now);
  std::tm utc{};
  ::gmtime_r(&seconds, &utc);
  return Format("%04d-%02d-%02dT%02d-%02d-%02d", utc.tm_year + 1900, utc.tm_mon + 1, utc.tm_mday,
                utc.tm_hour, utc.tm_min, utc.tm_sec);
}

// Of a text that has the form; a moment that there isn't gives another one.
std::int64_t MomentOf(std::string_view text) {
  const auto number = [&](std::size_t at, std::size_t size) {
    return ParseLong(text.substr(at, size));
  };
  std::tm utc{};
  utc.tm_year = number(0, 4) - 1900;
  utc.tm_mon = number(5, 2) - 1;
  utc.tm_mday = number(8, 2);
  utc.tm_hour = number(11, 2);
  utc.tm_min = number(14, 2);
  utc.tm_sec = number(17, 2);
  return ::timegm(&utc);
}

std::int32_t NumberOf(std::string_view name) {
  return name.size() == kForm.size() ? 1 : ParseLong(name.substr(kForm.size() + 1));
}

}  // namespace

bool IsBackupName(std::string_view name) {
  const std::string_view moment = name.substr(0, kForm.size());
  const std::string_view number = name.substr(moment.size());
  return HasForm(moment, kForm) && (number.empty() || HasForm(number, kFormOfNumber)) &&
         NameOf(MomentOf(moment)) == moment;
}

std::string NextBackupName(std::int64_t now, const std::string& latest) {
  std::string name = NameOf(now);
  if (latest < name) return name;
  const std::string moment = latest.substr(0, kForm.size());
  const std::int32_t number = NumberOf(latest) + 1;
  if (number > kMostInASecond) return NameOf(MomentOf(moment) + 1);
  return moment + Format("-%02d", number);
}

}  // namespace pw
