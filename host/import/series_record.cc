#include "host/import/series_record.h"

#include <memory>

#include "framework/event_record.h"
#include "timeplace/engine_zone.h"

namespace pw {
namespace {

namespace chrono = std::chrono;

// An event of the organiser's that comes back each year for ever.
bool IsSpecialDay(const EventSpan& first, const RuleDates& worked) {
  return worked.isOpen && worked.rule->unit == CalendarRule::Unit::kYear &&
         !IsOfSeveralDays(first, nullptr);
}

class PatternFiller {
 public:
  PatternFiller(const EventGroup& group, const EventSpan& span, CalendarMoments& moments,
                IncomingRecord& record)
      : group(group),
        series(*group.series),
        span(span),
        moments(moments),
        record(record),
        pattern(*PWEventRecord(&record.record).RecurrancePattern()) {}

  void AddDeleted(const LocalStart& start) {
    auto exception = std::make_unique<PWRecurranceException>();
    exception->Date = StampOfDate(start.first);
    exception->Changes.Bit(PWRecurranceException::kDeleted, true);
    pattern.AddException(exception.release());
  }

  void AddAllChanged() {
    for (const ReadEvent* each : group.changed) AddChanged(*each);
  }

 private:
  // An occurrence that is the same by the clock is none that was changed: only its length differs,
  // where the clocks change within it.
  void AddChanged(const ReadEvent& changed) {
    const auto date = StartOf(*changed.event.replaced, series, moments);
    const auto own = SpanOf(changed, moments);
    const std::string where = "line " + std::to_string(changed.line) + ": ";
    if (!own) {
      record.remarks.push_back(where + own.Why().message + ", and it is left out");
      return;
    }
    for (const std::string& remark : changed.remarks) record.remarks.push_back(where + remark);
    const auto expected = SpanFrom(*date, series, span, moments);
    const bool isSame = expected && own->start == expected->start && own->end == expected->end &&
                        changed.event.subject == series.event.subject &&
                        changed.event.location == series.event.location &&
                        changed.event.notes == series.event.notes &&
                        changed.event.alarmLead == series.event.alarmLead;
    if (isSame) return;
    auto exception = std::make_unique<PWRecurranceException>();
    exception->Date = StampOfDate(date->first);
    exception->StartDate = own->start;
    exception->EndDate = own->end;
    SetTexts(*exception, changed.event);
    pattern.AddException(exception.release());
  }

  // A changed occurrence is told whole, and so all of it counts as changed.
  void SetTexts(PWRecurranceException& exception, const Event& changed) {
    PWBitField& changes = exception.Changes;
    changes.Bit(PWRecurranceException::kHasAlarm, changed.alarmLead.has_value());
    exception.AlarmAdvance.value = changed.alarmLead.value_or(0);
    changes.Bit(PWRecurranceException::kSubjectChanged, true);
    exception.Subject = Incorporated(changed.subject, "Subject", record);
    changes.Bit(PWRecurranceException::kLocationChanged, true);
    exception.Location = Incorporated(changed.location, "Location", record);
    changes.Bit(PWRecurranceException::kNotesChanged, true);
    exception.Notes = Incorporated(changed.notes, "Notes", record);
  }

  const EventGroup& group;
  const ReadEvent& series;
  const EventSpan& span;
  CalendarMoments& moments;
  IncomingRecord& record;
  PWRecurrancePattern& pattern;
};

}  // namespace

std::string WhyNoSeries(const EventGroup& group, const EventSpan& first, const RuleDates& worked,
                        const WMCityRecord* home, CalendarMoments& moments) {
  if (!worked.rule) return "the organiser hasn't got its rule";
  if (first.isAllDay) {
    if (IsSpecialDay(first, worked)) return "";
    return "the organiser has series that last all day only on one day each year, without an end";
  }
  if (IsOfSeveralDays(first, home)) return "the organiser hasn't got series that go over midnight";
  for (const ReadEvent* each : group.changed) {
    const auto span = SpanOf(*each, moments);
    if (span && (span->isAllDay || IsOfSeveralDays(*span, home))) {
      return "the organiser hasn't got series with a changed date that isn't within one day";
    }
  }
  return "";
}

void SetPattern(const EventGroup& group, const EventSpan& span, const SeriesDates& dates,
                const RuleDates& worked, std::optional<chrono::sys_days> last,
                CalendarMoments& moments, IncomingRecord& record) {
  PWEventRecord event(&record.record);
  SetRule(event, *worked.rule);
  PWRecurrancePattern& pattern = *event.RecurrancePattern();
  pattern.Options.Bit(PWRecurrancePattern::kNeverEnds, worked.isOpen);
  // The organiser's own series keeps the end that it had, which may lie behind its last date.
  if (!worked.isOpen) pattern.EndDate = StampOfDate(last.value_or(worked.dates.back()));
  const WMCityRecord* city = moments.CityOf(group.series->event.start);
  if (city != nullptr && !span.isAllDay) {
    pattern.TimeZone = PWTimeZone(EngineZoneOf(*city, PWDateTimeStamp::CurrentTime().year));
  }
  PatternFiller filler(group, span, moments, record);
  for (const LocalStart& start : dates.deleted) filler.AddDeleted(start);
  filler.AddAllChanged();
}

}  // namespace pw
