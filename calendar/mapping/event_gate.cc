#include "calendar/mapping/event_gate.h"

#include <cstdint>

#include "calendar/calendar_state.h"
#include "calendar/mapping/event_shape.h"
#include "framework/event_record.h"
#include "framework/log.h"
#include "plugin/string_table.h"

namespace {

constexpr std::int32_t kLongestLead = 24 * 60 - 1;
constexpr std::int32_t kVersion50 = 50;
constexpr std::uint16_t kFirstYear = 1980;
constexpr std::uint16_t kLastYear = 2029;

// An event on its way through the rules.
class Gate {
 public:
  Gate(PWRecord& record, PWLog* log) : event(&record), log(log) {}

  bool Pass() {
    LimitAlarm();
    PWRecurrancePattern* pattern = event.RecurrancePattern();
    if (pattern == nullptr) return CheckYears();
    if (!CheckSeries(*pattern)) return false;
    if (event.AllDay()) return CheckYearly(*pattern) && isStorable;
    return CheckYearsOfSeries(*pattern);
  }

 private:
  void LimitAlarm() {
    const std::int32_t lead = event.AlarmAdvance();
    if (static_cast<std::uint32_t>(lead) <= static_cast<std::uint32_t>(kLongestLead)) return;
    if (log != nullptr) {
      log->Addf(LoadString(strings::kAlarmTooEarly), kLogWarning, event.Subject().Str().c_str(),
                lead, kLongestLead);
    }
    event.AlarmAdvance(kLongestLead);
  }

  // False if nothing else is to be looked at.
  bool CheckSeries(PWRecurrancePattern& pattern) {
    if (IsMultiDay(event)) {
      Refuse(strings::kAllDayRecurring);
      return true;
    }
    const PWRecurranceExceptionVector& exceptions = pattern.Exceptions();
    if (IsSpecialDayShape(event)) {
      if (exceptions.Count() > 0) Refuse(strings::kChangedOccurrence);
      return true;
    }
    for (std::uint32_t i = 0; i < exceptions.Count(); ++i) {
      PWRecurranceException* exception = exceptions.At(i);
      if (exception == nullptr || IsStorable(*exception)) continue;
      const bool hasSubject = exception->HasChange(PWRecurranceException::kSubjectChanged);
      Tell(strings::kChangedOccurrence, hasSubject ? exception->Subject : event.Subject());
      return false;
    }
    return true;
  }

  // The older files hold no changed occurrences.
  static bool IsStorable(PWRecurranceException& exception) {
    if (OrganiserVersion() == kVersion50) return !ChangedOccurrenceIsMultiDay(exception);
    return exception.HasChange(PWRecurranceException::kDeleted);
  }

  // All-day events recur yearly and without end, in whatever year.
  bool CheckYearly(const PWRecurrancePattern& pattern) {
    const bool isYearly =
        pattern.Type == kRecurranceYearlyByDate || pattern.Type == kRecurranceYearlyByDay;
    if (!isYearly) return Refuse(strings::kAllDayRecurring);
    return pattern.NeverEnds() || Refuse(strings::kYearlyWithEnd);
  }

  bool CheckYears() {
    if (event.StartDate().year < kFirstYear) return Refuse(strings::kEventTooEarly);
    if (event.EndDate().year > kLastYear) return Refuse(strings::kEventTooLate);
    return isStorable;
  }

  bool CheckYearsOfSeries(const PWRecurrancePattern& pattern) {
    if (event.StartDate().year < kFirstYear) {
      const bool goesOn = pattern.NeverEnds() || pattern.EndDate().year > kFirstYear;
      return goesOn ? Allow(strings::kEventMovedUp) : Refuse(strings::kEventTooEarly);
    }
    if (event.EndDate().year <= kLastYear) return isStorable;
    const bool startsInTime = event.StartDate().year <= kLastYear;
    return startsInTime ? Allow(strings::kEventMovedBack) : Refuse(strings::kEventTooLate);
  }

  bool Refuse(std::uint32_t text) {
    Tell(text, event.Subject());
    isStorable = false;
    return false;
  }

  bool Allow(std::uint32_t text) {
    Tell(text, event.Subject());
    isStorable = true;
    return true;
  }

  void Tell(std::uint32_t text, const char* subject) {
    if (log != nullptr) log->Addf("%s", kLogWarning, FormatString(text, subject).c_str());
  }

  PWEventRecord event;
  PWLog* log;
  bool isStorable = true;
};

}  // namespace

bool CheckEventStorable(PWRecord& record, PWLog* log) {
  return Gate(record, log).Pass();
}
