#include <algorithm>
#include <map>
#include <memory>
#include <optional>
#include <set>
#include <unordered_map>
#include <utility>

#include "base/text.h"
#include "framework/event_record.h"
#include "host/counted.h"
#include "host/formats/record_uid.h"
#include "host/import/calendar_moments.h"
#include "host/import/calendar_records.h"
#include "host/import/rule_dates.h"
#include "host/series_events.h"
#include "timeplace/date.h"
#include "timeplace/engine_zone.h"

namespace pw {
namespace {

namespace chrono = std::chrono;

constexpr std::string_view kOwnUid = "pairwise-";

PWDateTimeStamp StampOfDate(chrono::sys_days date) {
  const chrono::year_month_day day(date);
  return {static_cast<std::uint16_t>(static_cast<int>(day.year())),
          static_cast<std::uint8_t>(static_cast<unsigned>(day.month())),
          static_cast<std::uint8_t>(static_cast<unsigned>(day.day())),
          0,
          0,
          0};
}

PWDateTimeStamp StampOfUtc(std::int32_t seconds) {
  return StampOf(BrokenTimeOf(seconds));
}

// When an event takes place: UTC seconds, or dates of which the last one counts.
struct Span {
  bool isAllDay = false;
  PWDateTimeStamp start;
  PWDateTimeStamp end;
};

EPWEventRecordSensitivity SensitivityOf(const std::optional<EventAccess>& access) {
  if (access == EventAccess::kPersonal) return kSensitivityPersonal;
  return access == EventAccess::kPrivate ? kSensitivityPrivate : kSensitivityNormal;
}

// A series and its changed occurrences, or an event alone.
struct Group {
  const ReadEvent* series = nullptr;
  std::vector<const ReadEvent*> changed;
};

class EventImport {
 public:
  EventImport(const CalendarFile& file, const CityClocks& cities) : moments(file, cities) {
    incoming.problems = file.errors.Texts();
    for (const ReadEvent& read : file.events) TakeIntoGroup(read);
  }

  Incoming Finish() {
    for (const Group& group : groups) AddGroup(group);
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
      groups.push_back({&read, {}});
      return;
    }
    const auto [known, isNew] = groupOf.emplace(uid, groups.size());
    if (isNew) groups.emplace_back();
    Group& group = groups[known->second];
    if (read.event.replaced) {
      group.changed.push_back(&read);
    } else if (group.series == nullptr) {
      group.series = &read;
    } else {
      groups.push_back({&read, {}});
    }
  }

  void AddGroup(const Group& group) {
    if (group.series == nullptr) {
      for (const ReadEvent* each : group.changed) {
        AddSingle(*each, "an occurrence whose series isn't there, now an event of its own");
      }
      return;
    }
    const Event& event = group.series->event;
    if (event.rule.empty() && event.dates.empty() && event.deleted.empty()) {
      AddSingle(*group.series, "");
      for (const ReadEvent* each : group.changed) AddSingle(*each, "");
    } else if (event.rule.empty()) {
      AddDates(group, AllDates(group, {}), "its dates follow no rule");
    } else {
      AddSeries(group);
    }
  }

  // --- Events alone ---

  IncomingRecord& NewRecord(const ReadEvent& read) {
    IncomingRecord& record = incoming.records.emplace_back();
    record.where = "line " + std::to_string(read.line);
    return record;
  }

  void Fill(const ReadEvent& read, const Span& span, IncomingRecord& record) {
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

  // Nothing where a time isn't one, which is told.
  std::optional<Span> SpanOf(const ReadEvent& read) {
    const Event& event = read.event;
    const auto start = moments.UtcOf(event.start);
    const auto end = event.end ? moments.UtcOf(*event.end) : start;
    if (!start || !end) {
      incoming.problems.push_back("line " + std::to_string(read.line) +
                                  ": its times can't be read, and it is left out");
      return std::nullopt;
    }
    if (CalendarMoments::IsDate(event.start)) return DaysOf(read);
    const std::int32_t last = event.end ? *end : WrappingSum(*start, read.duration.value_or(0));
    return Span{false, StampOfUtc(*start), StampOfUtc(std::max(*start, last))};
  }

  Span DaysOf(const ReadEvent& read) {
    const Event& event = read.event;
    const chrono::sys_days start = *moments.DateBy(nullptr, event.start);
    chrono::sys_days last = start;
    if (event.end) last = *moments.DateBy(moments.CityOf(*event.end), *event.end) - chrono::days(1);
    if (read.duration) last = start + chrono::days(*read.duration / kSecondsPerDay - 1);
    return {true, StampOfDate(start), StampOfDate(std::max(start, last))};
  }

  void AddSingle(const ReadEvent& read, const char* remark) {
    const auto span = SpanOf(read);
    if (!span) return;
    IncomingRecord& record = NewRecord(read);
    record.id = IdOfRecordUid(read.event.uid);
    if (*remark != '\0') record.remarks.emplace_back(remark);
    Fill(read, *span, record);
  }

  // --- Series ---

  // All dates, by the series' clocks, that it takes place on as it says itself: those given, or
  // else its own and the ones beside; without those deleted or otherwise.
  std::set<chrono::sys_days> AllDates(const Group& group, std::vector<chrono::sys_days> ofRule) {
    const Event& event = group.series->event;
    const WMCityRecord* city = moments.CityOf(event.start);
    std::set<chrono::sys_days> dates(ofRule.begin(), ofRule.end());
    const auto start = moments.DateBy(city, event.start);
    if (start && event.rule.empty()) dates.insert(*start);
    for (const CalendarTime& time : event.dates) {
      if (const auto date = moments.DateBy(city, time)) dates.insert(*date);
    }
    for (const CalendarTime& time : event.deleted) {
      if (const auto date = moments.DateBy(city, time)) dates.erase(*date);
    }
    for (const ReadEvent* each : group.changed) {
      if (const auto date = moments.DateBy(city, *each->event.replaced)) dates.erase(*date);
    }
    return dates;
  }

  // The span of the series on another of its dates, at the same times by the clock.
  Span OnDate(const ReadEvent& series, const Span& span, chrono::sys_days date) {
    const WMCityRecord* city = moments.CityOf(series.event.start);
    const chrono::days shift = date - *moments.DateBy(city, series.event.start);
    if (span.isAllDay) {
      return {true, StampOfDate(DateOf(span.start) + shift), StampOfDate(DateOf(span.end) + shift)};
    }
    const auto shifted = [&](const PWDateTimeStamp& stamp) {
      PWDateTimeStamp local = LocalStamp(city, stamp);
      const PWDateTimeStamp day = StampOfDate(DateOf(local) + shift);
      local.year = day.year;
      local.month = day.month;
      local.day = day.day;
      return StampOfUtc(UtcSeconds(city, local));
    };
    return {false, shifted(span.start), shifted(span.end)};
  }

  // An event for each of the dates, and for each occurrence that is otherwise.
  void AddDates(const Group& group, const std::set<chrono::sys_days>& dates, const char* why) {
    const auto span = SpanOf(*group.series);
    if (!span) return;
    bool isFirst = true;
    for (const chrono::sys_days date : dates) {
      IncomingRecord& record = NewRecord(*group.series);
      if (std::exchange(isFirst, false)) {
        record.remarks.push_back(std::string(why) + ", and each is an event of its own");
      }
      Fill(*group.series, OnDate(*group.series, *span, date), record);
    }
    for (const ReadEvent* each : group.changed) AddSingle(*each, "");
  }

  void AddSeries(const Group& group) {
    const ReadEvent& series = *group.series;
    const auto span = SpanOf(series);
    if (!span) return;
    const WMCityRecord* city = moments.CityOf(series.event.start);
    const chrono::sys_days first = *moments.DateBy(city, series.event.start);
    const auto worked = WorkOutRule(series.event.rule, first, LastDate(series.event, city));
    const std::string where = "line " + std::to_string(series.line) + ": ";
    if (!worked || worked->dates.empty()) {
      incoming.problems.push_back(where + "its rule can't be followed, and it is left out");
      return;
    }
    if (!worked->rule && worked->isOpen) {
      incoming.problems.push_back(where +
                                  "the organiser hasn't got its rule, which has no end, "
                                  "and it is left out");
      return;
    }
    if (!worked->rule) {
      return AddDates(group, AllDates(group, worked->dates), "the organiser hasn't got its rule");
    }
    AddRule(group, *span, *worked);
  }

  // The last date that the rule names by a moment; nothing where it names none.
  std::optional<chrono::sys_days> LastDate(const Event& event, const WMCityRecord* city) {
    const CalendarTime until{UntilOf(event.rule), event.start.zone};
    if (until.text.empty()) return std::nullopt;
    return moments.DateBy(city, until);
  }

  void AddRule(const Group& group, const Span& span, const RuleDates& worked) {
    const ReadEvent& series = *group.series;
    const WMCityRecord* city = moments.CityOf(series.event.start);
    IncomingRecord& record = NewRecord(series);
    record.id = IdOfRecordUid(series.event.uid);
    Fill(series, OnDate(series, span, worked.dates.front()), record);
    PWEventRecord event(&record.record);
    SetRule(event, *worked.rule);
    PWRecurrancePattern& pattern = *event.RecurrancePattern();
    pattern.Options.Bit(PWRecurrancePattern::kNeverEnds, worked.isOpen);
    if (!worked.isOpen) pattern.EndDate = EndOf(series.event, city, worked);
    if (city != nullptr && !span.isAllDay) {
      pattern.TimeZone = PWTimeZone(EngineZoneOf(*city, PWDateTimeStamp::CurrentTime().year));
    }
    for (const CalendarTime& time : series.event.deleted) {
      if (const auto date = moments.DateBy(city, time)) AddDeleted(pattern, *date);
    }
    for (const ReadEvent* each : group.changed) AddChanged(pattern, group, *each);
    AddBeside(group, span, worked);
  }

  // The organiser's own series keeps the end that it had, which may lie behind its last date.
  PWDateTimeStamp EndOf(const Event& event, const WMCityRecord* city, const RuleDates& worked) {
    return StampOfDate(LastDate(event, city).value_or(worked.dates.back()));
  }

  static void AddDeleted(PWRecurrancePattern& pattern, chrono::sys_days date) {
    auto exception = std::make_unique<PWRecurranceException>();
    exception->Date = StampOfDate(date);
    exception->Changes.Bit(PWRecurranceException::kDeleted, true);
    pattern.AddException(exception.release());
  }

  // An occurrence that is the same by the clock is none that was changed: only its length differs,
  // where the clocks change within it.
  void AddChanged(PWRecurrancePattern& pattern, const Group& group, const ReadEvent& changed) {
    const ReadEvent& series = *group.series;
    const WMCityRecord* city = moments.CityOf(series.event.start);
    const auto date = moments.DateBy(city, *changed.event.replaced);
    const auto span = SpanOf(changed);
    const auto own = SpanOf(series);
    if (!date || !span || !own) return;
    const Span expected = OnDate(series, *own, *date);
    const bool isSame = span->start == expected.start && span->end == expected.end &&
                        changed.event.subject == series.event.subject &&
                        changed.event.location == series.event.location &&
                        changed.event.notes == series.event.notes &&
                        changed.event.alarmLead == series.event.alarmLead;
    if (isSame) return;
    auto exception = std::make_unique<PWRecurranceException>();
    exception->Date = StampOfDate(*date);
    exception->StartDate = span->start;
    exception->EndDate = span->end;
    SetTexts(*exception, changed.event);
    pattern.AddException(exception.release());
  }

  // A changed occurrence is told whole, and so all of it counts as changed.
  void SetTexts(PWRecurranceException& exception, const Event& changed) {
    IncomingRecord& record = incoming.records.back();
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

  // Dates beside the rule. Those of our own files the organiser gives by itself.
  void AddBeside(const Group& group, const Span& span, const RuleDates& worked) {
    const ReadEvent& series = *group.series;
    if (series.event.uid.rfind(kOwnUid, 0) == 0) return;
    std::set<chrono::sys_days> beside = AllDates(group, {});
    for (const chrono::sys_days date : worked.dates) beside.erase(date);
    for (const chrono::sys_days date : beside) {
      IncomingRecord& record = NewRecord(series);
      record.remarks.emplace_back("a date beside the rule of its series, now an event of its own");
      Fill(series, OnDate(series, span, date), record);
    }
  }

  CalendarMoments moments;
  std::vector<Group> groups;
  std::unordered_map<std::string, std::size_t> groupOf;
  Incoming incoming;
};

}  // namespace

Incoming EventsOfCalendar(const CalendarFile& file, const CityClocks& cities) {
  return EventImport(file, cities).Finish();
}

}  // namespace pw
