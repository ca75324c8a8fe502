#include "host/drive_records.h"

#include <algorithm>
#include <cstdint>
#include <iterator>

#include "framework/timezone_record.h"

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

constexpr RecordForm kForms[] = {
    {"contact", ContactToJson, ContactFromJson},
    {"timezone", TimezoneToJson, TimezoneFromJson},
};

}  // namespace

const RecordForm* FindRecordForm(std::string_view type) {
  const auto* found = std::find_if(std::begin(kForms), std::end(kForms),
                                   [&](const RecordForm& form) { return form.type == type; });
  return found == std::end(kForms) ? nullptr : found;
}

}  // namespace pw
