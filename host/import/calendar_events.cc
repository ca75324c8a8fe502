#include <map>
#include <optional>
#include <set>
#include <unordered_map>
#include <utility>

#include "framework/event_record.h"
#include "host/counted.h"
#include "host/formats/record_uid.h"
#include "host/import/calendar_moments.h"
#include "host/import/calendar_records.h"
#include "host/import/event_group.h"
#include "host/import/record_limits.h"
#include "host/import/rule_dates.h"
#include "host/import/series_record.h"
#include "host/record_reader.h"

namespace pw {
namespace {

namespace chrono = std::chrono;

EPWEventRecordSensitivity SensitivityOf(const std::optional<EventAccess>& access) {
  if (access == EventAccess::kPersonal) return kSensitivityPersonal;
  return access == EventAccess::kPrivate ? kSensitivityPrivate : kSensitivityNormal;
}

// Whether the organiser gives the date by itself to a series of its own that we exported: of a last
// weekday the fourth one, in a month that the series ends in before the fifth.
bool IsGivenByItself(chrono::sys_days date, const RuleDates& worked) {
  const CalendarRule& rule = *worked.rule;
  if (rule.week != -1 || date <= worked.dates.back()) return false;
  const chrono::year_month_day day(date);
  const chrono::year_month_day next(date + chrono::weeks(1));
  return chrono::weekday(date).c_encoding() == rule.weekdays.front() && day.month() == next.month();
}

class EventImport {
 public:
  EventImport(const CalendarFile& file, const CityClocks& cities, bool update)
      : moments(file, cities), home(cities.Home()), update(update) {
    incoming.problems = file.errors.Told();
    for (const ReadEvent& read : file.events) TakeIntoGroup(read);
  }

  Incoming Finish() {
    for (const EventGroup& group : groups) AddGroup(group);
    for (const std::string& zone : moments.UnknownZones()) {
      incoming.problems.push_back("zone \"" + zone +
                                  "\": no city has it, so that its times are those of the home "
                                  "city");
    }
    return std::move(incoming);
  }

 private:
  void TakeIntoGroup(const ReadEvent& read) {
    const std::string& uid = read.event.uid;
    // Events without a name have nothing to do with each other.
    if (uid.empty()) {
      groups.push_back({&read, {}, {}});
      return;
    }
    const auto [known, isNew] = groupOf.emplace(uid, groups.size());
    if (isNew) groups.emplace_back();
    EventGroup& group = groups[known->second];
    if (read.event.replaced && !CalendarMoments::IsTime(*read.event.replaced)) {
      AddSingle(read,
                "the date of its series that it takes the place of can't be read, and it is "
                "an event of its own now");
    } else if (read.event.replaced && read.isCancelled) {
      group.cancelled.push_back(*read.event.replaced);
    } else if (read.event.replaced) {
      group.changed.push_back(&read);
    } else if (group.series == nullptr) {
      group.series = &read;
    } else {
      groups.push_back({&read, {}, {}});
    }
  }

  void AddGroup(const EventGroup& group) {
    if (group.series == nullptr) {
      for (const ReadEvent* each : group.changed) {
        AddSingle(*each, "an occurrence whose series isn't there, now an event of its own");
      }
      return;
    }
    const Event& event = group.series->event;
    if (group.series->isCancelled) return LeaveOut(*group.series, "it was cancelled");
    const bool isAlone = event.rule.empty() && event.dates.empty() && event.deleted.empty() &&
                         group.cancelled.empty();
    if (!isAlone) return AddSeries(group);
    AddSingle(*group.series, "");
    for (const ReadEvent* each : group.changed) AddSingle(*each, "");
  }

  void LeaveOut(const ReadEvent& read, const std::string& why) {
    incoming.problems.push_back("line " + std::to_string(read.line) + ": " + why +
                                ", and it is left out");
  }

  // Whether a record of the organiser's is to be changed by it.
  bool IsUpdate(const ReadEvent& read) const {
    return update && !IdOfRecordUid(read.event.uid).text.empty();
  }

  // --- Events alone ---

  void Fill(const ReadEvent& read, const EventSpan& span, IncomingRecord& record) {
    record.where = "line " + std::to_string(read.line);
    record.remarks.insert(record.remarks.end(), read.remarks.begin(), read.remarks.end());
    PWEventRecord event(&record.record);
    event.Subject(Incorporated(read.event.subject, "Subject", record).c_str());
    event.Location(Incorporated(read.event.location, "Location", record).c_str());
    event.Notes(Incorporated(read.event.notes, "Notes", record).c_str(), PWRecord::kWholeText);
    event.AllDay(span.isAllDay);
    event.StartDate(span.start);
    event.EndDate(span.end);
    event.Alarm(read.event.alarmLead.has_value());
    event.AlarmAdvance(read.event.alarmLead.value_or(0));
    event.Sensitivity(SensitivityOf(read.event.access));
  }

  // The organiser would take one of no length without a word, and not keep it.
  void Lengthen(EventSpan& span, IncomingRecord& record) const {
    if (pw::Lengthen(span, home)) {
      record.remarks.emplace_back("it has no length, and is a minute long now");
    }
  }

  void AddSingle(const ReadEvent& read, const char* remark) {
    if (read.isCancelled) return LeaveOut(read, "it was cancelled");
    const bool isOccurrence = read.event.replaced.has_value();
    if (isOccurrence && IsUpdate(read)) {
      return LeaveOut(read, "it is a date of a series that the file doesn't hold as one");
    }
    auto span = SpanOf(read, moments);
    if (!span) return LeaveOut(read, span.Why().message);
    IncomingRecord& record = incoming.records.emplace_back();
    // A series isn't replaced by one of its dates.
    if (!isOccurrence) record.id = IdOfRecordUid(read.event.uid);
    if (*remark != '\0') record.remarks.emplace_back(remark);
    Lengthen(*span, record);
    Fill(read, *span, record);
  }

  // --- Series ---

  void AddSeries(const EventGroup& group) {
    const ReadEvent& series = *group.series;
    const auto span = SpanOf(series, moments);
    if (!span) return LeaveOut(series, span.Why().message);
    const SeriesDates dates = DatesOf(group, moments);
    if (series.event.rule.empty()) {
      return AddDates(group, *span, dates, {}, "its dates follow no rule");
    }
    const WMCityRecord* city = moments.CityOf(series.event.start);
    const CalendarTime until{UntilOf(series.event.rule), series.event.start.zone};
    const auto last = moments.DateBy(city, until);
    const auto worked = WorkOutRule(series.event.rule, *moments.DateBy(city, series.event.start),
                                    last, series.event.start.text);
    if (!worked || (!last && !until.text.empty())) {
      return LeaveOut(series, "its rule can't be followed");
    }
    if (worked->dates.empty()) {
      return AddDates(group, *span, dates, {}, "its rule gives no date but the first");
    }
    const LocalStart first{worked->dates.front(),
                           moments.LocalBy(city, series.event.start)->second};
    const auto firstSpan = SpanFrom(first, series, *span, moments);
    if (!firstSpan) return LeaveOut(series, "it lies outside of the years that the organiser has");
    const std::string why = WhyNoSeries(group, *firstSpan, *worked, home, moments);
    if (!why.empty() && worked->isOpen) return LeaveOut(series, why + ", and it has no end");
    if (!why.empty()) return AddDates(group, *span, dates, worked->dates, why);
    IncomingRecord& record = incoming.records.emplace_back();
    record.id = IdOfRecordUid(series.event.uid);
    record.remarks = dates.remarks;
    Fill(series, *firstSpan, record);
    SetPattern(group, *span, dates, *worked, last, moments, record);
    AddBeside(group, *span, dates, *worked);
  }

  // An event for each of the dates, and for each occurrence that is otherwise.
  void AddDates(const EventGroup& group, const EventSpan& span, const SeriesDates& dates,
                const std::vector<chrono::sys_days>& ofRule, const std::string& why) {
    const ReadEvent& series = *group.series;
    if (IsUpdate(series)) {
      return LeaveOut(series, why + ", so that it can't take the place of the one that is there");
    }
    const std::set<LocalStart> starts = StartsOf(group, dates, ofRule, moments);
    if (starts.empty() && group.changed.empty()) {
      return LeaveOut(series, "all its dates are deleted");
    }
    std::vector<std::string> remarks = dates.remarks;
    remarks.insert(remarks.begin(), why + ", and each date is an event of its own");
    AddEach(series, span, starts, std::move(remarks));
    for (const ReadEvent* each : group.changed) AddSingle(*each, "");
  }

  // Dates that the rule doesn't give.
  void AddBeside(const EventGroup& group, const EventSpan& span, const SeriesDates& dates,
                 const RuleDates& worked) {
    const ReadEvent& series = *group.series;
    const bool isOwn = !IdOfRecordUid(series.event.uid).text.empty();
    std::set<LocalStart> beside = StartsOf(group, dates, {}, moments);
    const auto own = StartOf(series.event.start, series, moments);
    for (const chrono::sys_days date : worked.dates) beside.erase({date, own->second});
    for (auto each = beside.begin(); isOwn && each != beside.end();) {
      each = IsGivenByItself(each->first, worked) ? beside.erase(each) : std::next(each);
    }
    if (beside.empty()) return;
    if (IsUpdate(series)) {
      incoming.records.back().remarks.push_back(Counted(beside.size(), "date", "dates") +
                                                " beside its rule can't come along, left out");
      return;
    }
    AddEach(series, span, beside,
            {"the rule of its series doesn't give its date, and it is an event of its own now"});
  }

  // An event for each of the starts. The first one has the remarks on all of them.
  void AddEach(const ReadEvent& series, const EventSpan& span, const std::set<LocalStart>& starts,
               std::vector<std::string> remarks) {
    IncomingRecord event;
    event.remarks = std::move(remarks);
    Fill(series, span, event);
    const std::string tooMany = WhyTooMany(series.event, starts.size());
    const std::string tooLong = WhyTooLong(event.record, kCalendarType);
    if (!tooMany.empty()) return LeaveOut(series, tooMany);
    if (!tooLong.empty()) return LeaveOut(series, tooLong);
    EventSpan first = span;
    Lengthen(first, event);
    std::size_t outside = 0;
    for (const LocalStart& start : starts) {
      auto own = SpanFrom(start, series, span, moments);
      if (!own) {
        ++outside;
        continue;
      }
      pw::Lengthen(*own, home);
      PWEventRecord record(&event.record);
      record.StartDate(own->start);
      record.EndDate(own->end);
      incoming.records.push_back(event);
      event.remarks.clear();
    }
    if (outside > 0) {
      LeaveOut(series, Counted(outside, "of its dates lies", "of its dates lie") +
                           " outside of the years that the organiser has");
    }
  }

  // Each date has all texts, so that a small file could fill the memory. Empty where they are few
  // enough, which are then counted.
  std::string WhyTooMany(const Event& event, std::size_t count) {
    constexpr std::size_t kBytesOfRecord = 1024;
    if (count > kMostDatesAlone) {
      return Counted(count, "date", "dates") + " of it would be an event each, and " +
             std::to_string(kMostDatesAlone) + " are the most";
    }
    const std::size_t texts =
        event.subject.size() + event.location.size() + event.notes.size() + kBytesOfRecord;
    if (count * texts > kMostBytesOfDates - bytesOfDates) {
      return "its dates would be an event each, of which the file has too many already";
    }
    bytesOfDates += count * texts;
    return "";
  }

  CalendarMoments moments;
  const WMCityRecord* home;
  bool update;
  std::vector<EventGroup> groups;
  std::unordered_map<std::string, std::size_t> groupOf;
  std::size_t bytesOfDates = 0;
  Incoming incoming;
};

}  // namespace

Incoming EventsOfCalendar(const CalendarFile& file, const CityClocks& cities, bool update) {
  Incoming incoming = EventImport(file, cities, update).Finish();
  if (file.events.empty()) {
    incoming.problems.push_back(
        "the file holds no events" +
        (file.todos.empty() ? ""
                            : ", but " + Counted(file.todos.size(), "to-do item", "to-do items") +
                                  ": import it as todo"));
  }
  return incoming;
}

}  // namespace pw
