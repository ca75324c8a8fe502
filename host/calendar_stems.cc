#include "host/calendar_stems.h"

#include <algorithm>
#include <string_view>
#include <system_error>

#include "base/codepage.h"
#include "base/text.h"

namespace pw {
namespace {

constexpr std::string_view kFixedParts[] = {"EVEN.WMW", "RECR.WMW", "DATA.WMW", "TASK.WMW",
                                            "CALL.WMW"};

}  // namespace

std::vector<std::string> CalendarStems(const std::filesystem::path& folder) {
  std::vector<std::string> stems;
  std::error_code error;
  for (const auto& entry : std::filesystem::directory_iterator(folder, error)) {
    const auto name = Utf8ToCodePage(entry.path().filename().string());
    if (!name) continue;
    for (const std::string_view fixed : kFixedParts) {
      if (!EndsWithIgnoringCase(*name, fixed)) continue;
      stems.push_back(name->substr(0, name->size() - fixed.size()));
    }
  }
  std::sort(stems.begin(), stems.end(), [](const std::string& a, const std::string& b) {
    const int order = CompareIgnoringCase(a, b);
    return order != 0 ? order < 0 : a < b;
  });
  stems.erase(std::unique(stems.begin(), stems.end(), EqualIgnoringCase), stems.end());
  return stems;
}

}  // namespace pw
