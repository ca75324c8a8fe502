#include "host/formats/vevent.h"

#include <algorithm>
#include <cstdlib>
#include <utility>

#include "base/text.h"
#include "host/formats/icalendar.h"

namespace pw {
namespace {

constexpr std::size_t kDateLength = 8;

std::vector<ContentParameter> ParametersOf(const CalendarTime& time) {
  if (!time.zone.empty()) return {{"TZID", {time.zone}}};
  if (time.text.size() == kDateLength) return {{"VALUE", {"DATE"}}};
  return {};
}

void AppendTime(std::string& out, std::string_view name, const CalendarTime& time) {
  AppendProperty(out, name, time.text, ParametersOf(time));
}

// All have the form of the first. A line has but so many of them, as there are programs that leave
// out what is behind a few hundred.
void AppendTimes(std::string& out, std::string_view name, const std::vector<CalendarTime>& times) {
  constexpr std::size_t kMostOfLine = 100;
  for (std::size_t begin = 0; begin < times.size(); begin += kMostOfLine) {
    const std::size_t end = std::min(begin + kMostOfLine, times.size());
    std::string list = times[begin].text;
    for (std::size_t i = begin + 1; i < end; ++i) list += "," + times[i].text;
    AppendProperty(out, name, std::move(list), ParametersOf(times[begin]));
  }
}

const char* ClassOf(EventAccess access) {
  switch (access) {
    case EventAccess::kPersonal:
      return "PRIVATE";
    case EventAccess::kPrivate:
      return "CONFIDENTIAL";
    default:
      return "PUBLIC";
  }
}

void AppendAlarm(std::string& out, const Event& event) {
  if (!event.alarmLead) return;
  const std::int32_t lead = *event.alarmLead;
  AppendProperty(out, "BEGIN", "VALARM");
  AppendProperty(out, "ACTION", "DISPLAY");
  AppendProperty(out, "TRIGGER", Format("%sPT%dM", lead > 0 ? "-" : "", std::abs(lead)));
  AppendTextProperty(out, "DESCRIPTION", event.subject.empty() ? "Alarm" : event.subject);
  AppendProperty(out, "END", "VALARM");
}

}  // namespace

void AppendVEvent(std::string& out, const Event& event, std::string_view now) {
  AppendProperty(out, "BEGIN", "VEVENT");
  AppendProperty(out, "UID", event.uid);
  AppendProperty(out, "DTSTAMP", event.changed.empty() ? std::string(now) : event.changed);
  if (!event.changed.empty()) AppendProperty(out, "LAST-MODIFIED", event.changed);
  if (event.replaced) AppendTime(out, "RECURRENCE-ID", *event.replaced);
  AppendTime(out, "DTSTART", event.start);
  if (event.end) AppendTime(out, "DTEND", *event.end);
  if (!event.rule.empty()) AppendProperty(out, "RRULE", event.rule);
  AppendTimes(out, "RDATE", event.dates);
  AppendTimes(out, "EXDATE", event.deleted);
  AppendTextProperty(out, "SUMMARY", event.subject);
  AppendTextProperty(out, "LOCATION", event.location);
  AppendTextProperty(out, "DESCRIPTION", event.notes);
  if (event.access) AppendProperty(out, "CLASS", ClassOf(*event.access));
  AppendAlarm(out, event);
  AppendProperty(out, "END", "VEVENT");
}

}  // namespace pw
