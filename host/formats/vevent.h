#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace pw {

// A date or a moment in an iCalendar file: "19980302", "19980302T140000Z", or, with the name of the
// zone whose clocks show it, "19980302T140000".
struct CalendarTime {
  std::string text;
  std::string zone;

  friend bool operator==(const CalendarTime&, const CalendarTime&) = default;
};

enum class EventAccess : std::uint8_t { kPublic, kPersonal, kPrivate };

// An event, or an occurrence that is otherwise than its series, on its way out of the organiser.
// All text is UTF-8; a line break in a value is the organiser's own, CR LF.
struct Event {
  std::string uid;      // an occurrence has its series'
  std::string changed;  // the moment of the last change, "YYYYMMDDTHHMMSSZ"; empty for unknown
  std::string subject;
  std::string notes;
  std::string location;
  CalendarTime start;
  std::optional<CalendarTime> end;        // the first moment, or date, behind it
  std::optional<std::int32_t> alarmLead;  // minutes before the start
  std::optional<EventAccess> access;      // nothing where it isn't known

  std::string rule;                   // by which it recurs; empty for none
  std::vector<CalendarTime> dates;    // on which it recurs beside, or without, a rule
  std::vector<CalendarTime> deleted;  // which the rule gives and the series lacks

  // Of an occurrence, when the series would have it.
  std::optional<CalendarTime> replaced;
};

// Appends it to an iCalendar file as a VEVENT. `now`, of the form of `changed`, stands where the
// moment of the change isn't known. docs/formats/ical.md has the map.
void AppendVEvent(std::string& out, const Event& event, std::string_view now);

}  // namespace pw
