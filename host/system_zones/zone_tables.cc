#include "host/system_zones/zone_tables.h"

#include <array>
#include <functional>

namespace pw {
namespace {

constexpr std::size_t kColumns = 3;

// The text up to the separator, taken off its front with it; all of it where there is none.
std::string_view TakeUntil(std::string_view& text, char separator) {
  const std::size_t end = text.find(separator);
  const std::string_view part = text.substr(0, end);
  text.remove_prefix(end == std::string_view::npos ? text.size() : end + 1);
  return part;
}

void ForEachRow(
    std::string_view text,
    const std::function<void(const std::array<std::string_view, kColumns>& columns)>& use) {
  while (!text.empty()) {
    std::string_view line = TakeUntil(text, '\n');
    if (line.starts_with('#')) continue;
    if (line.ends_with('\r')) line.remove_suffix(1);
    std::array<std::string_view, kColumns> columns;
    for (std::string_view& column : columns) column = TakeUntil(line, '\t');
    use(columns);
  }
}

}  // namespace

std::vector<ZoneRow> ParseZoneTable(std::string_view text) {
  std::vector<ZoneRow> rows;
  ForEachRow(text, [&](const auto& columns) {
    std::string_view codes = columns[0];
    const std::string_view code = TakeUntil(codes, ',');
    const std::string_view id = columns[2];
    if (!code.empty() && !id.empty()) rows.push_back({std::string(code), std::string(id)});
  });
  return rows;
}

std::map<std::string, std::string, std::less<>> ParseCountryTable(std::string_view text) {
  std::map<std::string, std::string, std::less<>> countries;
  ForEachRow(text, [&](const auto& columns) {
    if (!columns[1].empty()) countries.emplace(columns[0], columns[1]);
  });
  return countries;
}

}  // namespace pw
