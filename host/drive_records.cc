#include "host/drive_records.h"

#include <algorithm>
#include <cstdint>
#include <iterator>
#include <string>

#include "framework/memo_record.h"
#include "framework/task_record.h"
#include "framework/timezone_record.h"
#include "host/event_json.h"

namespace pw {
namespace {

constexpr const char* kContactFields = "fields";

Json ContactToJson(PWRecord& record) {
  Json fields = Json::array();
  for (const PWRecord::Field& field : record.Fields()) {
    fields.push_back(Json::array({JsonText(field.name), JsonText(field.value.View())}));
  }
  return Json{{kContactFields, std::move(fields)}};
}

void ContactFromJson(JsonFields& fields, PWRecord& record) {
  if (!fields.Has(kContactFields)) return;
  for (const auto& [name, value] : fields.Pairs(kContactFields)) record.SetField(name, value);
}

// The engine's words are numbers with a sign where nothing else is said.
Json SignedJson(std::uint32_t word) {
  return static_cast<std::int32_t>(word);
}

Json TimezoneToJson(PWRecord& record) {
  const PWTimezoneRecord clock(&record);
  return Json{
      {"City", JsonText(clock.City().View())},
      {"State", JsonText(clock.State().View())},
      {"Country", JsonText(clock.Country().View())},
      {"Home", clock.Home()},
      {"World", clock.World()},
      {"Active", clock.Active()},
      {"Bias", SignedJson(clock.Bias())},
      {"StandardBias", SignedJson(clock.StandardBias())},
      {"DaylightBias", SignedJson(clock.DaylightBias())},
      {"StandardSwitch", SignedJson(clock.StandardSwitch())},
      {"DaylightSwitch", SignedJson(clock.DaylightSwitch())},
  };
}

void TimezoneFromJson(JsonFields& fields, PWRecord& record) {
  PWTimezoneRecord clock(&record);
  const auto number = [&](const char* name) {
    return static_cast<std::uint32_t>(fields.Signed(name));
  };
  if (fields.Has("City")) clock.City(fields.Text("City").c_str());
  if (fields.Has("State")) clock.State(fields.Text("State").c_str());
  if (fields.Has("Country")) clock.Country(fields.Text("Country").c_str());
  if (fields.Has("Home")) clock.Home(fields.Bool("Home"));
  if (fields.Has("World")) clock.World(fields.Bool("World"));
  if (fields.Has("Active")) clock.Active(fields.Bool("Active"));
  if (fields.Has("Bias")) clock.Bias(number("Bias"));
  if (fields.Has("StandardBias")) clock.StandardBias(number("StandardBias"));
  if (fields.Has("DaylightBias")) clock.DaylightBias(number("DaylightBias"));
  if (fields.Has("StandardSwitch")) clock.StandardSwitch(number("StandardSwitch"));
  if (fields.Has("DaylightSwitch")) clock.DaylightSwitch(number("DaylightSwitch"));
}

Json TodoToJson(PWRecord& record) {
  const PWTaskRecord todo(&record);
  return Json{
      {"Call", todo.Call()},
      {"Subject", JsonText(todo.Subject().View())},
      {"Note", JsonText(todo.Note().View())},
      {"NoStartDate", todo.NoStartDate()},
      {"StartDate", StampText(todo.StartDate())},
      {"NoDueDate", todo.NoDueDate()},
      {"DueDate", StampText(todo.DueDate())},
      {"Priority", static_cast<std::int32_t>(todo.Priority())},
      {"Completed", todo.Completed()},
  };
}

// Who names no date has none; who names one needn't say so.
bool HasNoDate(JsonFields& fields, const char* flag, const char* date) {
  if (!fields.Has(flag)) return !fields.Has(date);
  const bool none = fields.Bool(flag);
  if (!none && !fields.Has(date)) fields.Fail("\"" + std::string(date) + "\" is missing");
  return none;
}

void TodoFromJson(JsonFields& fields, PWRecord& record) {
  PWTaskRecord todo(&record);
  todo.NoStartDate(HasNoDate(fields, "NoStartDate", "StartDate"));
  todo.NoDueDate(HasNoDate(fields, "NoDueDate", "DueDate"));
  if (fields.Has("StartDate")) todo.StartDate(fields.Stamp("StartDate"));
  if (fields.Has("DueDate")) todo.DueDate(fields.Stamp("DueDate"));
  if (fields.Has("Call")) todo.Call(fields.Bool("Call"));
  if (fields.Has("Subject")) todo.Subject(fields.Text("Subject").c_str());
  if (fields.Has("Note")) todo.Note(fields.Text("Note").c_str());
  todo.Priority(fields.Has("Priority")
                    ? static_cast<EPWTaskRecordPriority>(fields.Signed("Priority"))
                    : kPriorityNormal);
  if (fields.Has("Completed")) todo.Completed(fields.Bool("Completed"));
}

Json MemoToJson(PWRecord& record) {
  const PWMemoRecord memo(&record);
  return Json{{"Subject", JsonText(memo.Subject().View())}, {"Body", JsonText(memo.Body().View())}};
}

void MemoFromJson(JsonFields& fields, PWRecord& record) {
  PWMemoRecord memo(&record);
  if (fields.Has("Subject")) memo.Subject(fields.Text("Subject").c_str(), PWRecord::kWholeText);
  if (fields.Has("Body")) memo.Body(fields.Text("Body").c_str(), PWRecord::kWholeText);
}

constexpr RecordForm kForms[] = {
    {"contact", ContactToJson, ContactFromJson}, {"timezone", TimezoneToJson, TimezoneFromJson},
    {"todo", TodoToJson, TodoFromJson},          {"calendar", EventToJson, EventFromJson},
    {"memo", MemoToJson, MemoFromJson},
};

}  // namespace

const RecordForm* FindRecordForm(std::string_view type) {
  const auto* found = std::find_if(std::begin(kForms), std::end(kForms),
                                   [&](const RecordForm& form) { return form.type == type; });
  return found == std::end(kForms) ? nullptr : found;
}

}  // namespace pw
