#include "host/event_json.h"

#include <limits>
#include <memory>
#include <string>
#include <string_view>
#include <type_traits>
#include <utility>

#include "framework/event_record.h"

namespace pw {
namespace {

// Each of these calls `visit` with the names and the numbers of a part.

template <class Visit>
void VisitVariant(PWRecurrancePattern& pattern, Visit visit) {
  if (auto* daily = pattern.Daily()) visit("Interval", daily->Interval);
  if (auto* weekly = pattern.Weekly()) {
    visit("Interval", weekly->Interval);
    visit("Days", weekly->Days.bits);
  }
  if (auto* monthly = pattern.MonthlyByDate()) {
    visit("Interval", monthly->Interval);
    visit("Days", monthly->Days.bits);
  }
  if (auto* monthly = pattern.MonthlyByDay()) {
    visit("Interval", monthly->Interval);
    visit("Week", monthly->Week);
    visit("Day", monthly->Day);
  }
  if (auto* yearly = pattern.YearlyByDate()) {
    visit("Month", yearly->Month);
    visit("Day", yearly->Day);
  }
  if (auto* yearly = pattern.YearlyByDay()) {
    visit("Month", yearly->Month);
    visit("Week", yearly->Week);
    visit("Day", yearly->Day);
  }
}

template <class Date, class Visit>
void VisitSwitch(Date& date, Visit visit) {
  visit("Year", date.wYear);
  visit("Month", date.wMonth);
  visit("DayOfWeek", date.wDayOfWeek);
  visit("Day", date.wDay);
  visit("Hour", date.wHour);
  visit("Minute", date.wMinute);
  visit("Second", date.wSecond);
  visit("Milliseconds", date.wMilliseconds);
}

template <class Zone, class Visit>
void VisitBiases(Zone& zone, Visit visit) {
  visit("Bias", zone.Bias);
  visit("StandardBias", zone.StandardBias);
  visit("DaylightBias", zone.DaylightBias);
}

// Takes a number that is named; any other stays.
auto Taking(JsonFields& fields) {
  return [&fields](const char* name, auto& number) {
    using Number = std::remove_reference_t<decltype(number)>;
    using Limits = std::numeric_limits<Number>;
    if (!fields.Has(name)) return;
    number = static_cast<Number>(fields.Whole(name, Limits::min(), Limits::max()));
  };
}

auto Giving(Json& json) {
  return [&json](const char* name, auto number) { json[name] = number; };
}

// Only what isn't 0, as most of it is.
Json SwitchToJson(const SYSTEMTIME& date) {
  Json json = Json::object();
  VisitSwitch(date, [&](const char* name, std::uint16_t number) {
    if (number != 0) json[name] = number;
  });
  return json;
}

Json ZoneToJson(const TIME_ZONE_INFORMATION& zone) {
  Json json = Json::object();
  VisitBiases(zone, Giving(json));
  json["StandardDate"] = SwitchToJson(zone.StandardDate);
  json["DaylightDate"] = SwitchToJson(zone.DaylightDate);
  return json;
}

// Reads an object within another, which learns what is wrong with it.
template <class Read>
void ReadWithin(JsonFields& outer, const JsonInput& object, Read read) {
  JsonFields inner(object);
  read(inner);
  if (inner.Failed()) outer.Fail(inner.Problem());
}

void SwitchFromJson(JsonFields& fields, const char* name, SYSTEMTIME& date) {
  if (!fields.Has(name)) return;
  ReadWithin(fields, fields.Object(name),
             [&](JsonFields& inner) { VisitSwitch(date, Taking(inner)); });
}

void ZoneFromJson(JsonFields& fields, TIME_ZONE_INFORMATION& zone) {
  VisitBiases(zone, Taking(fields));
  SwitchFromJson(fields, "StandardDate", zone.StandardDate);
  SwitchFromJson(fields, "DaylightDate", zone.DaylightDate);
}

// A deleted one has no more to say.
Json ExceptionToJson(const PWRecurranceException& exception) {
  Json json{{"Date", DateText(exception.Date)}, {"Changes", exception.Changes.bits}};
  if (exception.HasChange(PWRecurranceException::kDeleted)) return json;
  json["StartDate"] = StampText(exception.StartDate);
  json["EndDate"] = StampText(exception.EndDate);
  json["Subject"] = JsonText(exception.Subject.View());
  json["Location"] = JsonText(exception.Location.View());
  json["Notes"] = JsonText(exception.Notes.View());
  json["AlarmAdvance"] = exception.AlarmAdvance.value;
  return json;
}

void ExceptionFromJson(JsonFields& fields, PWRecurranceException& exception) {
  exception.Date = fields.Stamp("Date");
  exception.Changes.bits = fields.Unsigned("Changes");
  if (fields.Has("StartDate")) exception.StartDate = fields.Stamp("StartDate");
  if (fields.Has("EndDate")) exception.EndDate = fields.Stamp("EndDate");
  if (fields.Has("Subject")) exception.Subject = fields.Text("Subject");
  if (fields.Has("Location")) exception.Location = fields.Text("Location");
  if (fields.Has("Notes")) exception.Notes = fields.Text("Notes");
  if (fields.Has("AlarmAdvance")) exception.AlarmAdvance.value = fields.Signed("AlarmAdvance");
}

Json PatternToJson(PWRecurrancePattern& pattern) {
  Json json{{"Type", static_cast<std::int32_t>(pattern.Type())}};
  VisitVariant(pattern, Giving(json));
  json["EndDate"] = StampText(pattern.EndDate());
  json["Options"] = pattern.Options.bits;
  json["TimeZone"] = ZoneToJson(pattern.TimeZone.zone);
  Json exceptions = Json::array();
  for (std::uint32_t i = 0; i < pattern.Exceptions().Count(); ++i) {
    const PWRecurranceException* exception = pattern.Exceptions().At(i);
    if (exception != nullptr) exceptions.push_back(ExceptionToJson(*exception));
  }
  json["Exceptions"] = std::move(exceptions);
  return json;
}

// Who names no end has none, and who names no interval means 1.
void PatternFromJson(JsonFields& fields, PWEventRecord& event) {
  event.Recurring(true, static_cast<ERecurranceType>(fields.Signed("Type")));
  PWRecurrancePattern& pattern = *event.RecurrancePattern();
  VisitVariant(pattern, [&](const char* name, auto& number) {
    if (name == std::string_view("Interval")) number = 1;
    Taking(fields)(name, number);
  });
  pattern.Options.Bit(PWRecurrancePattern::kNeverEnds, !fields.Has("EndDate"));
  if (fields.Has("EndDate")) pattern.EndDate = fields.Stamp("EndDate");
  if (fields.Has("Options")) pattern.Options.bits = fields.Unsigned("Options");
  if (fields.Has("TimeZone")) {
    ReadWithin(fields, fields.Object("TimeZone"),
               [&](JsonFields& zone) { ZoneFromJson(zone, pattern.TimeZone.zone); });
  }
  if (!fields.Has("Exceptions")) return;
  for (const JsonInput* each : fields.Objects("Exceptions")) {
    auto exception = std::make_unique<PWRecurranceException>();
    ReadWithin(fields, *each, [&](JsonFields& inner) { ExceptionFromJson(inner, *exception); });
    pattern.AddException(exception.release());
  }
}

}  // namespace

Json EventToJson(PWRecord& record) {
  const PWEventRecord event(&record);
  Json json{
      {"Subject", JsonText(event.Subject().View())},
      {"Location", JsonText(event.Location().View())},
      {"Notes", JsonText(event.Notes().View())},
      {"StartDate", StampText(event.StartDate())},
      {"EndDate", StampText(event.EndDate())},
      {"AllDay", event.AllDay()},
      {"Alarm", event.Alarm()},
      {"AlarmAdvance", event.AlarmAdvance()},
      {"Sensitivity", static_cast<std::int32_t>(event.Sensitivity())},
  };
  if (event.Recurring()) json["Pattern"] = PatternToJson(*event.RecurrancePattern());
  return json;
}

void EventFromJson(JsonFields& fields, PWRecord& record) {
  PWEventRecord event(&record);
  event.AllDay(fields.Has("AllDay") && fields.Bool("AllDay"));
  event.StartDate(fields.Stamp("StartDate"));
  const bool isOneDate = event.AllDay() && !fields.Has("EndDate");
  event.EndDate(isOneDate ? event.StartDate() : fields.Stamp("EndDate"));
  if (fields.Has("Subject")) event.Subject(fields.Text("Subject").c_str());
  if (fields.Has("Location")) event.Location(fields.Text("Location").c_str());
  if (fields.Has("Notes")) event.Notes(fields.Text("Notes").c_str(), PWRecord::kWholeText);
  if (fields.Has("Alarm")) event.Alarm(fields.Bool("Alarm"));
  if (fields.Has("AlarmAdvance")) event.AlarmAdvance(fields.Signed("AlarmAdvance"));
  if (fields.Has("Sensitivity")) {
    event.Sensitivity(static_cast<EPWEventRecordSensitivity>(fields.Signed("Sensitivity")));
  }
  if (!fields.Has("Pattern")) return;
  ReadWithin(fields, fields.Object("Pattern"),
             [&](JsonFields& pattern) { PatternFromJson(pattern, event); });
}

}  // namespace pw
