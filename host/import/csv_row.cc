#include "host/import/csv_row.h"

#include <algorithm>
#include <string_view>

#include "base/text.h"
#include "host/formats/stamp_text.h"

namespace pw {
namespace {

constexpr std::int32_t kMinutesPerDay = 24 * 60;
constexpr std::size_t kMostLeadDigits = 6;

// Nothing for what is no such text.
std::optional<std::int32_t> LeadOf(std::string_view cell) {
  const std::size_t digits = std::min(cell.find_first_not_of("0123456789"), cell.size());
  if (digits == 0 || digits > kMostLeadDigits) return std::nullopt;
  const std::int32_t number = ParseLong(cell.substr(0, digits));
  const std::string_view unit = cell.substr(digits);
  if (EqualIgnoringCase(unit, " min before")) return number;
  const bool areDays =
      EqualIgnoringCase(unit, " day before") || EqualIgnoringCase(unit, " days before");
  if (!areDays || number > INT32_MAX / kMinutesPerDay) return std::nullopt;
  return number * kMinutesPerDay;
}

}  // namespace

const std::string* CsvRow::Cell(const char* column) const {
  const auto found = std::find_if(row.fields.begin(), row.fields.end(), [&](const auto& field) {
    return EqualIgnoringCase(field.first, column);
  });
  return found == row.fields.end() ? nullptr : &found->second;
}

void CsvRow::Text(const char* column, const char* member) {
  if (const std::string* cell = Cell(column)) told[member] = *cell;
}

void CsvRow::Word(const char* column, const char* member, const std::vector<CellWord>& words) {
  const std::string* cell = Cell(column);
  if (cell == nullptr) return;
  std::string wanted;
  for (const CellWord& each : words) {
    if (EqualIgnoringCase(each.word, *cell)) {
      told[member] = each.value;
      return;
    }
    if (*each.word == '\0') continue;
    wanted += (wanted.empty() ? "\"" : " or \"") + std::string(each.word) + "\"";
  }
  Remark(column, *cell, wanted);
}

void CsvRow::Date(const char* column, const char* member, const char* none) {
  const std::string* cell = Cell(column);
  if (cell == nullptr) return;
  if (!cell->empty() && !IsDate(*cell)) return Remark(column, *cell, "a date as 1998-03-02");
  told[none] = cell->empty();
  if (!cell->empty()) told[member] = *cell;
}

void CsvRow::Alarm(const char* column, const char* flag, const char* minutes) {
  const std::string* cell = Cell(column);
  if (cell == nullptr) return;
  const auto lead = LeadOf(*cell);
  if (!cell->empty() && !lead) return Remark(column, *cell, "\"15 min before\" or the like");
  told[flag] = lead.has_value();
  if (lead) told[minutes] = *lead;
}

void CsvRow::Remark(const char* column, const std::string& cell, const std::string& wanted) {
  incoming.remarks.push_back(std::string(column) + " \"" + cell + "\" isn't " + wanted +
                             ", and is left out");
}

}  // namespace pw
