#include "host/import/typed_csv.h"

#include <algorithm>
#include <optional>
#include <utility>
#include <vector>

#include "base/text.h"
#include "framework/event_record.h"
#include "framework/memo_record.h"
#include "framework/timezone_record.h"
#include "host/event_json.h"
#include "host/formats/csv.h"
#include "host/formats/stamp_text.h"
#include "host/import/todo_import.h"
#include "host/record_reader.h"
#include "host/record_views.h"
#include "timeplace/date.h"

namespace pw {
namespace {

constexpr std::int32_t kMinutesPerDay = 24 * 60;

const std::string& Cell(const Contact& row, const char* column) {
  static const std::string kNone;
  const auto found = std::find_if(row.fields.begin(), row.fields.end(),
                                  [&](const auto& field) { return field.first == column; });
  return found == row.fields.end() ? kNone : found->second;
}

// A row, the record that it becomes, and the clocks of events. Each gives what is wrong with it, or
// nothing.
using FillRow = std::string (*)(const Contact& row, const CityClocks& cities,
                                IncomingRecord& record);

std::string FillTodo(const Contact& row, const CityClocks& /*cities*/, IncomingRecord& record) {
  Todo todo;
  todo.subject = Cell(row, "Subject");
  todo.note = Cell(row, "Note");
  todo.start = Cell(row, "Start");
  todo.due = Cell(row, "Due");
  if (Cell(row, "Priority") == "high") todo.priority = TodoPriority::kHigh;
  if (Cell(row, "Priority") == "low") todo.priority = TodoPriority::kLow;
  todo.completed = Cell(row, "Done") == "yes";
  todo.call = Cell(row, "Kind") == "call";
  SetTodo(todo, record);
  return "";
}

std::string FillMemo(const Contact& row, const CityClocks& /*cities*/, IncomingRecord& record) {
  PWMemoRecord memo(&record.record);
  memo.Subject(Incorporated(Cell(row, "Subject"), "Subject", record).c_str(), PWRecord::kWholeText);
  memo.Body(Incorporated(Cell(row, "Body"), "Body", record).c_str(), PWRecord::kWholeText);
  record.category = Cell(row, kCategoryColumn);
  return "";
}

std::string FillClock(const Contact& row, const CityClocks& /*cities*/, IncomingRecord& record) {
  PWTimezoneRecord clock(&record.record);
  clock.City(Incorporated(Cell(row, "City"), "City", record).c_str());
  clock.State(Incorporated(Cell(row, "State"), "State", record).c_str());
  clock.Country(Incorporated(Cell(row, "Country"), "Country", record).c_str());
  clock.Home(Cell(row, "Home") == "yes");
  clock.Active(Cell(row, "Active") == "yes");
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

// "15 min before", "1 day before".
void SetAlarm(const std::string& cell, PWEventRecord& event) {
  event.Alarm(!cell.empty());
  if (cell.empty()) return;
  const bool areDays = cell.find(" day") != std::string::npos;
  event.AlarmAdvance(ParseLong(cell) * (areDays ? kMinutesPerDay : 1));
}

// The texts that a person may have changed.
void SetTexts(const Contact& row, IncomingRecord& record) {
  PWEventRecord event(&record.record);
  event.Subject(Incorporated(Cell(row, "Subject"), "Subject", record).c_str());
  event.Location(Incorporated(Cell(row, "Location"), "Location", record).c_str());
  event.Notes(Incorporated(Cell(row, "Notes"), "Notes", record).c_str(), PWRecord::kWholeText);
  SetAlarm(Cell(row, "Alarm"), event);
  if (Cell(row, "Access") == "personal") event.Sensitivity(kSensitivityPersonal);
  if (Cell(row, "Access") == "private") event.Sensitivity(kSensitivityPrivate);
}

// Its times and dates are those of the column that tells them whole.
std::string FillSeries(const std::string& series, IncomingRecord& record) {
  const JsonInput json =
      IsTooDeep(series) ? JsonInput() : JsonInput::parse(series, nullptr, false, false);
  JsonFields fields(json);
  EventFromJson(fields, record.record);
  return fields.Problem();
}

std::string FillEvent(const Contact& row, const CityClocks& cities, IncomingRecord& record) {
  const std::string& series = Cell(row, kSeriesColumn);
  if (!series.empty()) {
    std::string wrong = FillSeries(series, record);
    SetTexts(row, record);
    return wrong;
  }
  if (!Cell(row, "Repeats").empty()) return "its column \"Series\" is missing";
  const std::string& startText = Cell(row, "Start");
  const auto start = StampIn(startText);
  const auto end = StampIn(Cell(row, "End"));
  if (!start || !end) return "it has no times";
  const bool areHeld = UtcWithin(nullptr, *start) && UtcWithin(nullptr, *end);
  PWEventRecord event(&record.record);
  event.AllDay(IsDate(startText));
  if (!event.AllDay() && !areHeld) return "it lies outside of the years that the organiser has";
  const auto inUtc = [&](const PWDateTimeStamp& stamp) {
    return event.AllDay() ? stamp : StampOf(BrokenTimeOf(UtcSeconds(cities.Home(), stamp)));
  };
  event.StartDate(inUtc(*start));
  event.EndDate(inUtc(*end));
  SetTexts(row, record);
  return "";
}

FillRow FillRowOf(const std::string& type) {
  if (type == kTodoType) return FillTodo;
  if (type == kMemoType) return FillMemo;
  return type == kCalendarType ? FillEvent : FillClock;
}

}  // namespace

Incoming ReadTypedCsv(std::string_view text, const std::string& type, const CityClocks& cities) {
  const CsvFile read = ReadCsv(text);
  Incoming incoming;
  incoming.problems = read.errors.Texts();
  std::size_t number = 0;
  for (const Contact& row : read.contacts) {
    IncomingRecord record;
    record.where = "record " + std::to_string(++number);
    record.id = row.id;
    const std::string wrong = FillRowOf(type)(row, cities, record);
    if (wrong.empty()) {
      incoming.records.push_back(std::move(record));
    } else {
      incoming.problems.push_back(record.where + ": " + wrong + ", and it is left out");
    }
  }
  return incoming;
}

}  // namespace pw
