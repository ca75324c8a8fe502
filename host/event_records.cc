#include "host/event_records.h"

#include "base/codepage.h"
#include "base/text.h"
#include "host/json_fields.h"
#include "host/rule_of_pattern.h"

namespace pw {
namespace {

std::string Utf8(const PWString& text) {
  return CodePageToUtf8(text.View());
}

// A series' own city, else the home city.
const WMCityRecord* CityOf(const PWEventRecord& event, const CityClocks& clocks) {
  const PWRecurrancePattern* pattern = event.RecurrancePattern();
  const WMCityRecord* fitting = pattern == nullptr ? nullptr : clocks.Fitting(pattern->TimeZone);
  return fitting == nullptr ? clocks.Home() : fitting;
}

// "1998-03-02 14:00", or the date alone; empty for a stamp that was never set.
std::string TimeText(const PWDateTimeStamp& stamp, bool isDate, const WMCityRecord* city) {
  if (stamp == PWDateTimeStamp()) return {};
  if (isDate) return DateText(stamp);
  const PWDateTimeStamp local = LocalStamp(city, stamp);
  std::string text =
      DateText(local) + Format(" %02u:%02u", unsigned{local.hour}, unsigned{local.minute});
  if (local.second != 0) text += Format(":%02u", unsigned{local.second});
  return text;
}

std::string PatternInWords(PWRecurrancePattern* pattern) {
  if (pattern == nullptr) return {};
  const auto rule = RuleOfPattern(*pattern);
  const std::string words = rule ? RuleInWords(*rule) : "yes, but on no date";
  return pattern->NeverEnds() ? words : words + " until " + DateText(pattern->EndDate());
}

// The texts of all exceptions that are deleted, or of all that aren't.
template <class Text>
std::string TextOfExceptions(PWRecurrancePattern* pattern, bool deleted, const char* separator,
                             Text text) {
  std::string all;
  for (std::uint32_t i = 0; pattern != nullptr && i < pattern->Exceptions().Count(); ++i) {
    const PWRecurranceException* exception = pattern->Exceptions().At(i);
    if (exception == nullptr) continue;
    if (exception->HasChange(PWRecurranceException::kDeleted) != deleted) continue;
    all += (all.empty() ? "" : separator) + text(*exception);
  }
  return all;
}

std::string DeletedDates(PWRecurrancePattern* pattern) {
  return TextOfExceptions(pattern, true, ", ", [](const PWRecurranceException& exception) {
    return DateText(exception.Date);
  });
}

// "1998-04-29: now 1998-04-30 18:00 to 1998-04-30 20:00, Rehearsal, Hall", a line each.
std::string ChangedDates(PWRecurrancePattern* pattern, const WMCityRecord* city) {
  return TextOfExceptions(pattern, false, "\r\n", [&](const PWRecurranceException& exception) {
    std::string text = DateText(exception.Date) + ": ";
    if (exception.StartDate == PWDateTimeStamp()) return text + "not there";
    text += "now " + TimeText(exception.StartDate, false, city) + " to " +
            TimeText(exception.EndDate, false, city);
    for (const PWString* part : {&exception.Subject, &exception.Location}) {
      if (!part->IsEmpty()) text += ", " + Utf8(*part);
    }
    return text;
  });
}

const char* AccessWord(EventAccess access) {
  switch (access) {
    case EventAccess::kPersonal:
      return "personal";
    case EventAccess::kPrivate:
      return "private";
    default:
      return "";
  }
}

// "15 min before", "1 day before"
std::string AlarmInWords(const PWEventRecord& event) {
  constexpr std::int32_t kMinutesPerDay = 24 * 60;
  if (!event.Alarm()) return {};
  const std::int32_t lead = event.AlarmAdvance();
  if (lead == 0 || lead % kMinutesPerDay != 0) return Format("%d min before", lead);
  const std::int32_t days = lead / kMinutesPerDay;
  return Format(days == 1 ? "%d day before" : "%d days before", days);
}

}  // namespace

EventAccess AccessOf(EPWEventRecordSensitivity sensitivity) {
  switch (sensitivity) {
    case kSensitivityPersonal:
      return EventAccess::kPersonal;
    case kSensitivityPrivate:
    case kSensitivityConfidential:
      return EventAccess::kPrivate;
    default:
      return EventAccess::kPublic;
  }
}

Event EventTextsOf(const PWEventRecord& record) {
  Event event;
  event.subject = Utf8(record.Subject());
  event.notes = Utf8(record.Notes());
  event.location = Utf8(record.Location());
  if (record.Alarm()) event.alarmLead = record.AlarmAdvance();
  // The organiser keeps it for plain events alone.
  if (!record.AllDay() && !record.Recurring()) event.access = AccessOf(record.Sensitivity());
  return event;
}

std::vector<std::string> EventColumns(PWRecord& record, const CityClocks& clocks) {
  const PWEventRecord event(&record);
  const WMCityRecord* city = CityOf(event, clocks);
  return {Utf8(event.Subject()),
          TimeText(event.StartDate(), event.AllDay(), city),
          TimeText(event.EndDate(), event.AllDay(), city),
          PatternInWords(event.RecurrancePattern()),
          Utf8(event.Location()),
          AlarmInWords(event),
          AccessWord(AccessOf(event.Sensitivity())),
          DeletedDates(event.RecurrancePattern()),
          ChangedDates(event.RecurrancePattern(), city),
          Utf8(event.Notes())};
}

}  // namespace pw
