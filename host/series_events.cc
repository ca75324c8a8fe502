#include "host/series_events.h"

#include <algorithm>
#include <iterator>
#include <optional>
#include <set>
#include <utility>

#include "base/codepage.h"
#include "base/text.h"
#include "host/city_clocks.h"
#include "host/rule_of_pattern.h"
#include "timeplace/date.h"
#include "timeplace/zone_rule.h"

namespace pw {
namespace {

namespace chrono = std::chrono;

using Moments = std::vector<std::int32_t>;

PWDateTimeStamp StampAt(chrono::sys_days date, const PWDateTimeStamp& time) {
  const chrono::year_month_day day(date);
  return {static_cast<std::uint16_t>(static_cast<int>(day.year())),
          static_cast<std::uint8_t>(static_cast<unsigned>(day.month())),
          static_cast<std::uint8_t>(static_cast<unsigned>(day.day())),
          time.hour,
          time.minute,
          time.second};
}

// A series on its way out.
class Series {
 public:
  Series(const PWEventRecord& record, const Moments& stored, const SeriesClock& clock)
      : record(record),
        pattern(*record.RecurrancePattern()),
        stored(stored),
        clock(clock),
        first(LocalStamp(clock.city, record.StartDate())) {}

  std::vector<Event> Events(Event series) {
    std::vector<Event> events;
    for (std::uint32_t i = 0; i < pattern.Exceptions().Count(); ++i) {
      const PWRecurranceException* exception = pattern.Exceptions().At(i);
      if (exception != nullptr) TakeException(*exception, series, events);
    }
    SetTimes(series);
    events.insert(events.begin(), std::move(series));
    return events;
  }

 private:
  // When the series takes place on a date.
  std::int32_t On(chrono::sys_days date) const {
    return UtcSeconds(clock.city, StampAt(date, first));
  }

  // An exception that isn't deleted, but whose occurrence isn't there, has no times. Of several
  // that are there on one date all but the first one stand by themselves.
  void TakeException(const PWRecurranceException& exception, const Event& series,
                     std::vector<Event>& events) {
    const chrono::sys_days date = DateOf(exception.Date);
    exceptions.insert(date);
    const bool isThere = !exception.HasChange(PWRecurranceException::kDeleted) &&
                         !(exception.StartDate == PWDateTimeStamp());
    if (!isThere) return;
    Event& changed = events.emplace_back(series);
    changed.subject = CodePageToUtf8(exception.Subject.View());
    changed.notes = CodePageToUtf8(exception.Notes.View());
    changed.location = CodePageToUtf8(exception.Location.View());
    changed.alarmLead.reset();
    if (exception.HasChange(PWRecurranceException::kHasAlarm)) {
      changed.alarmLead = exception.AlarmAdvance.value;
    }
    SetSpan(changed, StampToSeconds(exception.StartDate), StampToSeconds(exception.EndDate));
    if (replaced.insert(date).second) {
      changed.replaced = clock.At(On(date));
    } else {
      changed.uid += "-" + std::to_string(events.size());
    }
  }

  void SetSpan(Event& event, std::int32_t start, std::int32_t end) const {
    event.start = clock.At(start);
    event.end.reset();
    if (end > start) event.end = clock.At(end);
  }

  void SetTimes(Event& series) const {
    const std::int32_t start = StampToSeconds(record.StartDate());
    const std::int32_t end = StampToSeconds(record.EndDate());
    SetSpan(series, start, end);
    const auto rule = RuleOfPattern(pattern);
    const auto more = rule ? Beside(*rule) : std::nullopt;
    if (!more) return SetDates(series, end - start);
    series.rule = RuleValue(*rule, DateOf(first)) + ";UNTIL=" + Until();
    series.dates = *more;
    for (const chrono::sys_days date : exceptions) {
      if (replaced.count(date) == 0) series.deleted.push_back(clock.At(On(date)));
    }
  }

  // What the series has beside the dates of the rule and the exceptions; nothing if it lacks one of
  // these, or has so many others that the rule is none of the organiser's. One more it may have: of
  // a last weekday in a month that the series ends in.
  std::optional<std::vector<CalendarTime>> Beside(const CalendarRule& rule) const {
    constexpr std::size_t kMostBeside = 1;
    const Moments expanded = Expanded(rule);
    Moments beside;
    std::set_difference(stored.begin(), stored.end(), expanded.begin(), expanded.end(),
                        std::back_inserter(beside));
    if (stored.size() != expanded.size() + beside.size() || beside.size() > kMostBeside) return {};
    std::vector<CalendarTime> times;
    for (const std::int32_t moment : beside) times.push_back(clock.At(moment));
    return times;
  }

  // The moments that the rule gives beside the exceptions. One more than there should be is enough.
  Moments Expanded(const CalendarRule& rule) const {
    const std::size_t most = stored.size() + exceptions.size() + 1;
    Moments moments;
    for (const chrono::sys_days date :
         DatesOfRule(rule, DateOf(first), DateOf(pattern.EndDate()), most)) {
      if (exceptions.count(date) == 0) moments.push_back(On(date));
    }
    return moments;
  }

  // The last second of the pattern's last date, which may be behind the last moment that there is.
  // It must be in UTC.
  std::string Until() const {
    const PWDateTimeStamp lastSecond(0, 0, 0, 23, 59, 59);
    const PWDateTimeStamp last = StampAt(DateOf(pattern.EndDate()), lastSecond);
    const std::int32_t least = stored.empty() ? 0 : stored.back();
    return SeriesClock().At(std::max(UtcSeconds(clock.city, last), least)).text;
  }

  // The dates themselves, those of occurrences that are otherwise included. The first one is told
  // by the start; where there is none that is taken back.
  void SetDates(Event& series, std::int32_t length) const {
    std::set<std::int32_t> moments(stored.begin(), stored.end());
    for (const chrono::sys_days date : replaced) moments.insert(On(date));
    if (moments.empty()) {
      series.deleted.push_back(series.start);
      return;
    }
    const std::int32_t start = *moments.begin();
    SetSpan(series, start, WrappingSum(start, length));
    for (const std::int32_t moment : moments) {
      if (moment != start) series.dates.push_back(clock.At(moment));
    }
  }

  const PWEventRecord& record;
  PWRecurrancePattern& pattern;
  const Moments& stored;
  const SeriesClock& clock;
  PWDateTimeStamp first;                  // start of the first date, by the clock
  std::set<chrono::sys_days> exceptions;  // the dates of all
  std::set<chrono::sys_days> replaced;    // of those whose occurrence is otherwise
};

}  // namespace

CalendarTime SeriesClock::At(std::int32_t utc) const {
  const std::int32_t local = city == nullptr ? utc : UtcToLocal(*city, utc).seconds;
  const PWDateTimeStamp stamp = StampOf(BrokenTimeOf(local));
  const std::string time =
      Format("T%02u%02u%02u", unsigned{stamp.hour}, unsigned{stamp.minute}, unsigned{stamp.second});
  return {DateOf(DateOf(stamp)).text + time + (city == nullptr ? "Z" : ""), name};
}

CalendarTime DateOf(chrono::sys_days date) {
  const chrono::year_month_day day(date);
  return {Format("%04d%02u%02u", static_cast<int>(day.year()), static_cast<unsigned>(day.month()),
                 static_cast<unsigned>(day.day())),
          {}};
}

chrono::sys_days DateOf(const PWDateTimeStamp& stamp) {
  const chrono::month month(std::clamp<unsigned>(stamp.month, 1, 12));
  return chrono::sys_days(chrono::year(stamp.year) / month / 1) + chrono::days(stamp.day - 1);
}

void SetYearly(Event& event, const PWEventRecord& record) {
  event.rule = "FREQ=YEARLY";
  const auto rule = RuleOfPattern(*record.RecurrancePattern());
  if (!rule) return;
  const chrono::sys_days start = DateOf(record.StartDate());
  const std::vector<chrono::sys_days> dates = DatesOfRule(*rule, start, start, 1);
  // A day that no month has is read as another one, which then comes every year.
  if (!dates.empty()) event.rule = RuleValue(*rule, start);
}

std::vector<Event> EventsOfSeries(Event series, const PWEventRecord& record, const Moments& stored,
                                  const SeriesClock& clock) {
  return Series(record, stored, clock).Events(std::move(series));
}

}  // namespace pw
