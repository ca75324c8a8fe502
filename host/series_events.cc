#include "host/series_events.h"

#include <algorithm>
#include <iterator>
#include <map>
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
using Occurrences = std::vector<Occurrence>;

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
  Series(const PWEventRecord& record, const SeriesClock& clock)
      : record(record),
        pattern(*record.RecurrancePattern()),
        rule(RuleOfPattern(pattern)),
        clock(clock),
        first(LocalStamp(clock.city, record.StartDate())) {}

  std::vector<Event> Events(Event series, const std::optional<Occurrences>& occurrences) {
    std::vector<Event> events;
    for (std::uint32_t i = 0; i < pattern.Exceptions().Count(); ++i) {
      const PWRecurranceException* exception = pattern.Exceptions().At(i);
      if (exception != nullptr) TakeException(*exception, series, events);
    }
    const Occurrences all = occurrences ? *occurrences : OfPattern();
    for (const Occurrence& each : all) starts.push_back(each.start);
    length = LengthOf(all).value_or(
        Length(StampToSeconds(record.StartDate()), StampToSeconds(record.EndDate())));
    AddOfOtherLength(all, series, events);
    SetTimes(series);
    events.insert(events.begin(), std::move(series));
    return events;
  }

 private:
  // Those of the pattern without its exceptions, from and to the same times by the clock.
  Occurrences OfPattern() const {
    constexpr std::size_t kMost = 100'000;  // more than there are days from 1980 to 2037
    if (!rule) return {};
    const PWDateTimeStamp end = LocalStamp(clock.city, record.EndDate());
    Occurrences occurrences;
    for (const chrono::sys_days date :
         DatesOfRule(*rule, DateOf(first), DateOf(pattern.EndDate()), kMost)) {
      if (exceptions.count(date) != 0) continue;
      occurrences.push_back({On(date), UtcSeconds(clock.city, StampAt(date, end))});
    }
    return occurrences;
  }

  // What most of them have, in seconds; nothing where there is none.
  static std::optional<std::int32_t> LengthOf(const Occurrences& occurrences) {
    std::map<std::int32_t, std::size_t> counts;
    for (const Occurrence& each : occurrences) ++counts[Length(each.start, each.end)];
    const auto most = std::max_element(counts.begin(), counts.end(),
                                       [](auto& a, auto& b) { return a.second < b.second; });
    if (most == counts.end()) return std::nullopt;
    return most->first;
  }

  static std::int32_t Length(std::int32_t start, std::int32_t end) {
    return end > start ? WrappingSum(end, -start) : 0;
  }

  // All occurrences of one event have its length. Where the clocks change within them theirs, which
  // end by the clock, is another one.
  void AddOfOtherLength(const Occurrences& occurrences, const Event& series,
                        std::vector<Event>& events) const {
    std::optional<std::int32_t> last;
    for (const Occurrence& each : occurrences) {
      if (Length(each.start, each.end) == length || each.start == last) continue;
      Event& event = events.emplace_back(series);
      SetSpan(event, each.start, each.end);
      event.replaced = clock.At(each.start);
      last = each.start;
    }
  }

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
    SetSpan(series, start, WrappingSum(start, length));
    const auto more = rule && clock.IsTold() ? Beside() : std::nullopt;
    if (!more) return SetDates(series);
    series.rule = RuleValue(*rule, DateOf(first)) + ";UNTIL=" + Until();
    series.dates = *more;
    for (const chrono::sys_days date : exceptions) {
      if (replaced.count(date) == 0) series.deleted.push_back(clock.At(On(date)));
    }
  }

  // What the series has beside the dates of the rule and the exceptions; nothing if it lacks one of
  // these, or has so many others that the rule is none of the organiser's. One more it may have: of
  // a last weekday in a month that the series ends in. An occurrence that is otherwise may take the
  // place of a date that the rule hasn't got.
  std::optional<std::vector<CalendarTime>> Beside() const {
    constexpr std::size_t kMostBeside = 1;
    const std::size_t most = starts.size() + exceptions.size() + 1;
    Moments expanded;
    std::set<chrono::sys_days> otherwise = replaced;
    for (const chrono::sys_days date :
         DatesOfRule(*rule, DateOf(first), DateOf(pattern.EndDate()), most)) {
      otherwise.erase(date);
      if (exceptions.count(date) == 0) expanded.push_back(On(date));
    }
    Moments beside;
    std::set_difference(starts.begin(), starts.end(), expanded.begin(), expanded.end(),
                        std::back_inserter(beside));
    if (starts.size() != expanded.size() + beside.size() || beside.size() > kMostBeside) return {};
    std::vector<CalendarTime> times;
    for (const std::int32_t moment : beside) times.push_back(clock.At(moment));
    for (const chrono::sys_days date : otherwise) times.push_back(clock.At(On(date)));
    return times;
  }

  // The last second of the pattern's last date, which may be behind the last moment that there is.
  // It must be in UTC.
  std::string Until() const {
    const PWDateTimeStamp lastSecond(0, 0, 0, 23, 59, 59);
    const PWDateTimeStamp last = StampAt(DateOf(pattern.EndDate()), lastSecond);
    const std::int32_t least = starts.empty() ? 0 : starts.back();
    return SeriesClock().At(std::max(UtcSeconds(clock.city, last), least)).text;
  }

  // The dates themselves, those of occurrences that are otherwise included. The first one is told
  // by the start; where there is none that is taken back.
  void SetDates(Event& series) const {
    std::set<std::int32_t> moments(starts.begin(), starts.end());
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
  const std::optional<CalendarRule> rule;
  const SeriesClock& clock;
  PWDateTimeStamp first;                  // start of the first date, by the clock
  std::set<chrono::sys_days> exceptions;  // the dates of all
  std::set<chrono::sys_days> replaced;    // of those whose occurrence is otherwise
  Moments starts;                         // of those that aren't, ascending
  std::int32_t length = 0;                // of most of them, in seconds
};

}  // namespace

CalendarTime SeriesClock::At(std::int32_t utc) const {
  const bool isUtc = name.empty();
  const std::int32_t local = isUtc ? utc : UtcToLocal(*city, utc).seconds;
  const PWDateTimeStamp stamp = StampOf(BrokenTimeOf(local));
  const std::string time =
      Format("T%02u%02u%02u", unsigned{stamp.hour}, unsigned{stamp.minute}, unsigned{stamp.second});
  return {DateOf(DateOf(stamp)).text + time + (isUtc ? "Z" : ""), name};
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

std::vector<Event> EventsOfSeries(Event series, const PWEventRecord& record,
                                  const std::optional<Occurrences>& stored,
                                  const SeriesClock& clock) {
  return Series(record, clock).Events(std::move(series), stored);
}

}  // namespace pw
