#include "host/import/typed_csv.h"

#include <algorithm>
#include <optional>
#include <utility>
#include <vector>

#include "base/text.h"
#include "framework/event_record.h"
#include "framework/task_record.h"
#include "host/drive_records.h"
#include "host/formats/csv.h"
#include "host/formats/stamp_text.h"
#include "host/import/csv_row.h"
#include "host/import/headings.h"
#include "host/import/told_record.h"
#include "host/record_reader.h"
#include "host/record_views.h"
#include "timeplace/date.h"

namespace pw {
namespace {

std::vector<CellWord> YesOrNo() {
  return {{"yes", true}, {"no", false}, {"", false}};
}

// Takes what a row tells; times of events are by the clocks. Gives what is wrong with it, or
// nothing.
using TakeRow = std::string (*)(CsvRow& row, const CityClocks& cities, IncomingRecord& incoming);

std::string TakeTodo(CsvRow& row, const CityClocks& /*cities*/, IncomingRecord& /*incoming*/) {
  row.Text("Subject", "Subject");
  row.Text("Note", "Note");
  row.Date("Start", "StartDate", "NoStartDate");
  row.Date("Due", "DueDate", "NoDueDate");
  row.Word("Priority", "Priority",
           {{"high", kPriorityHigh},
            {"normal", kPriorityNormal},
            {"low", kPriorityLow},
            {"", kPriorityNormal}});
  row.Word("Done", "Completed", YesOrNo());
  row.Word("Kind", "Call", {{"call", true}, {"task", false}, {"", false}});
  return "";
}

std::string TakeMemo(CsvRow& row, const CityClocks& /*cities*/, IncomingRecord& incoming) {
  row.Text("Subject", "Subject");
  row.Text("Body", "Body");
  if (const std::string* category = row.Cell(kCategoryColumn)) incoming.category = *category;
  return "";
}

std::string TakeClock(CsvRow& row, const CityClocks& /*cities*/, IncomingRecord& /*incoming*/) {
  for (const char* column : {"City", "State", "Country"}) row.Text(column, column);
  for (const char* column : {"Home", "Active"}) row.Word(column, column, YesOrNo());
  return "";
}

// "1998-03-02", "1998-03-02 14:00" or "1998-03-02 14:00:05".
std::optional<PWDateTimeStamp> StampIn(const std::string& cell) {
  std::string text = cell.size() == 10 ? cell + "T00:00:00" : cell;
  if (text.size() == 16) text += ":00";
  if (text.size() > 10 && text[10] == ' ') text[10] = 'T';
  if (!IsStamp(text)) return std::nullopt;
  const auto number = [&](std::size_t at, std::size_t length) {
    return ParseLong(std::string_view(text).substr(at, length));
  };
  return PWDateTimeStamp(
      static_cast<std::uint16_t>(number(0, 4)), static_cast<std::uint8_t>(number(5, 2)),
      static_cast<std::uint8_t>(number(8, 2)), static_cast<std::uint8_t>(number(11, 2)),
      static_cast<std::uint8_t>(number(14, 2)), static_cast<std::uint8_t>(number(17, 2)));
}

// The times of an event alone. Gives what is wrong with them, if anything is.
std::string TakeTimes(CsvRow& row, const CityClocks& cities) {
  constexpr std::pair<const char*, const char*> kTimes[] = {{"Start", "StartDate"},
                                                            {"End", "EndDate"}};
  for (const auto& [column, member] : kTimes) {
    const std::string* cell = row.Cell(column);
    if (cell == nullptr) continue;
    const auto stamp = StampIn(*cell);
    if (!stamp) return "it has no times";
    if (!row.Told().contains("AllDay")) row.Told()["AllDay"] = IsDate(*cell);
    const bool isAllDay = row.Told()["AllDay"].get<bool>();
    if (!isAllDay && !UtcWithin(nullptr, *stamp)) {
      return "it lies outside of the years that the organiser has";
    }
    row.Told()[member] =
        StampText(isAllDay ? *stamp : StampOf(BrokenTimeOf(UtcSeconds(cities.Home(), *stamp))));
  }
  return {};
}

// The times and the dates of a series, from the column that tells them whole; those of any other
// event, which that column or the one in words shows to be none.
std::string TakeWhen(CsvRow& row, const CityClocks& cities) {
  const std::string* series = row.Cell(kSeriesColumn);
  const std::string* repeats = row.Cell("Repeats");
  if (series != nullptr && !series->empty()) {
    row.Told() =
        IsTooDeep(*series) ? JsonInput() : JsonInput::parse(*series, nullptr, false, false);
    return row.Told().is_object() ? "" : "its column \"Series\" can't be read";
  }
  const bool repeatsInWords = series == nullptr && repeats != nullptr && !repeats->empty();
  const bool tellsTimes = row.Cell("Start") != nullptr || row.Cell("End") != nullptr;
  if (repeatsInWords && tellsTimes) return "its column \"Series\" is missing";
  if (std::string wrong = TakeTimes(row, cities); !wrong.empty()) return wrong;
  if (tellsTimes && (series != nullptr || repeats != nullptr)) row.Told()["Pattern"] = nullptr;
  return "";
}

std::string TakeEvent(CsvRow& row, const CityClocks& cities, IncomingRecord& /*incoming*/) {
  std::string wrong = TakeWhen(row, cities);
  if (!wrong.empty()) return wrong;
  for (const char* column : {"Subject", "Location", "Notes"}) row.Text(column, column);
  row.Alarm("Alarm", "Alarm", "AlarmAdvance");
  // That of a series stands in its own column, and in words only where there are words for it.
  const std::string* access = row.Cell("Access");
  if (access != nullptr && access->empty() && row.Told().contains("Sensitivity")) return "";
  row.Word("Access", "Sensitivity",
           {{"personal", kSensitivityPersonal},
            {"private", kSensitivityPrivate},
            {"", kSensitivityNormal}});
  return "";
}

TakeRow TakeRowOf(std::string_view type) {
  if (type == kTodoType) return TakeTodo;
  if (type == kMemoType) return TakeMemo;
  return type == kCalendarType ? TakeEvent : TakeClock;
}

std::vector<std::string> ColumnsOf(std::string_view type) {
  std::vector<std::string> columns = FindRecordView(type)->columns;
  if (type == kMemoType) columns.emplace_back(kCategoryColumn);
  if (type == kCalendarType) columns.emplace_back(kSeriesColumn);
  return columns;
}

void RemarkUnknown(const std::vector<std::string>& headings,
                   const std::vector<std::string>& columns, Incoming& incoming) {
  for (const std::string& heading : headings) {
    const bool isKnown =
        std::any_of(columns.begin(), columns.end(),
                    [&](const std::string& column) { return EqualIgnoringCase(column, heading); });
    if (!isKnown) {
      incoming.remarks.push_back("the column \"" + heading + "\" isn't known, and is left out");
    }
  }
}

}  // namespace

Incoming ReadTypedCsv(std::string_view text, const std::string& type, const CityClocks& cities) {
  const RecordForm& form = *FindRecordForm(type);
  CsvFile read = ReadCsv(text);
  Incoming incoming;
  const std::vector<std::string> columns = ColumnsOf(type);
  const std::string unknown = WhyNoneKnown(read.names, columns);
  if (!unknown.empty()) {
    incoming.problems.push_back(unknown);
    return incoming;
  }
  RemarkUnknown(read.names, columns, incoming);
  std::size_t number = 0;
  for (const Contact& cells : read.contacts) {
    IncomingRecord record;
    record.where = "record " + std::to_string(++number);
    record.id.text = cells.id;
    CsvRow row(cells, record);
    std::string wrong = TakeRowOf(type)(row, cities, record);
    if (wrong.empty()) wrong = TakeTold(row.Told(), form, record);
    if (wrong.empty()) {
      incoming.records.push_back(std::move(record));
    } else {
      read.errors.Add(record.where + ": " + wrong + ", and it is left out");
    }
  }
  incoming.problems = read.errors.Told();
  return incoming;
}

}  // namespace pw
