#include "calendar/mapping/series_mapping.h"

#include <algorithm>
#include <map>
#include <memory>
#include <utility>

#include "calendar/calendar_state.h"
#include "calendar/calendar_store.h"
#include "calendar/mapping/event_fields.h"
#include "calendar/mapping/event_shape.h"
#include "calendar/mapping/pattern_rule.h"
#include "calendar/zone_scope.h"
#include "framework/event_record.h"
#include "plugin/string_table.h"
#include "timeplace/zones.h"

namespace {

constexpr std::int32_t kYearsKept = 5;
constexpr std::uint8_t kHourOfLastDay = 10;
constexpr std::int32_t kSlotsPerHour = 4;
constexpr std::int32_t kMinutesPerSlot = 15;

// From where to where a series goes.
struct Range {
  std::int32_t firstDay;
  std::int32_t lastDay;
  bool isCut;
};

Range ClosedRange(const PWRecurrancePattern& pattern, std::int32_t firstDay,
                  const WMBrokenTime& firstEnd) {
  PWDateTimeStamp end = pattern.EndDate();
  ClampStamp(end);
  WMBrokenTime last = SecondsToPlain(
      StampToSeconds(PWDateTimeStamp(end.year, end.month, end.day, kHourOfLastDay, 0, 0)));
  const bool isCut = last.year - firstEnd.year > kYearsKept;
  if (isCut) last.year = firstEnd.year + MostYears(pattern.Type);
  return {firstDay, LocalToSeconds(last), isCut};
}

Range OpenRange(const PWRecurrancePattern& pattern, std::int32_t firstDay,
                const WMBrokenTime& firstEnd) {
  const std::int32_t thisYear = SecondsToLocal(UtcNowSeconds()).year;
  WMBrokenTime last = firstEnd;
  if (thisYear > firstEnd.year) {
    WMBrokenTime first = SecondsToLocal(firstDay);
    first.year = thisYear;
    firstDay = LocalToSeconds(first);
    last.year = thisYear;
  }
  last.year += MostYears(pattern.Type);
  return {firstDay, LocalToSeconds(last), true};
}

// The times of day of the first occurrence, for all: in the detail, in the slot, and in the range,
// which grows by them but never shrinks. It ends a minute behind the end of an occurrence, unless
// that is the last one of its hour.
void SetRuleTimes(WMRecurringItem& item, PWEventRecord& event) {
  constexpr std::int32_t kLastMinute = 59;
  PWDateTimeStamp startStamp = event.StartDate();
  PWDateTimeStamp endStamp = event.EndDate();
  ClampStampRange(startStamp, endStamp);
  const WMBrokenTime start = SecondsToLocal(StampToSeconds(startStamp));
  const WMBrokenTime end = SecondsToLocal(StampToSeconds(endStamp));
  item.detail.SetStartTime(start.hour, start.min);
  item.detail.SetEndTime(end.hour, end.min);

  WMRecurrenceRule& rule = item.rule;
  rule.startSlot =
      static_cast<std::uint16_t>(start.hour * kSlotsPerHour + start.min / kMinutesPerSlot);
  WMBrokenTime first = SecondsToLocal(rule.firstDay);
  first.hour = start.hour;
  first.min = start.min;
  first.sec = start.sec;
  WMBrokenTime last = SecondsToLocal(rule.lastDay);
  last.hour = end.hour;
  if (end.min != kLastMinute) last.min = end.min + 1;
  last.sec = end.sec;
  rule.firstDay = std::min(LocalToSeconds(first), rule.firstDay);
  rule.lastDay = std::max(LocalToSeconds(last), rule.lastDay);
}

// Changed occurrences are among the deleted dates too: they stand as items of their own.
void SetExceptions(WMRecurringItem& item, PWRecurrancePattern& pattern) {
  const PWRecurranceExceptionVector& exceptions = pattern.Exceptions();
  for (std::uint32_t i = 0; i < exceptions.Count(); ++i) {
    const PWRecurranceException* exception = exceptions.At(i);
    if (exception == nullptr) continue;
    const std::int32_t date = LocalStampToSeconds(exception->Date);
    AddDeletedDate(item, date);
    const ItemIdPair id = NewItemIdPair();
    WMRecurringException& stored = item.exceptions.emplace_back();
    stored.deleted = exception->HasChange(PWRecurranceException::kDeleted);
    stored.date = date;
    stored.stamp = StampToSeconds(exception->StartDate);
    stored.itemCreated = static_cast<std::uint32_t>(id.created);
    stored.itemId = id.id;
  }
}

// The ids of changed occurrences by their dates and their starts; of two alike the first.
using ChangedIds = std::map<std::pair<std::int32_t, std::int32_t>, std::uint32_t>;

void MatchExceptionLinks(WMRecurringItem& item, std::int32_t key, const ChangedIds& changed) {
  for (WMRecurringException& exception : item.exceptions) {
    if (!exception.deleted) exception.itemCreated = exception.itemId = 0;
    if (exception.itemCreated != 0 || exception.itemId != 0) continue;
    const auto found = changed.find({exception.date, exception.stamp});
    if (found == changed.end()) continue;
    exception.itemCreated = static_cast<std::uint32_t>(key);
    exception.itemId = found->second;
  }
}

void ApplyExceptions(WMCalendarStore& store, PWEventRecord& event, std::int32_t key) {
  const PWRecurranceExceptionVector& exceptions = event.RecurrancePattern()->Exceptions();
  ChangedIds changed;
  for (std::uint32_t i = 0; i < exceptions.Count(); ++i) {
    const PWRecurranceException* exception = exceptions.At(i);
    if (exception == nullptr || exception->HasChange(PWRecurranceException::kDeleted)) continue;
    auto item = MakeChangedOccurrenceItem(event, *exception);
    item->SetCreated(key);
    changed.try_emplace(
        {LocalStampToSeconds(exception->Date), StampToSeconds(exception->StartDate)},
        static_cast<std::uint32_t>(item->Id()));
    store.occurrenceItems.Append(std::move(item));
  }
  if (changed.empty()) return;
  if (const auto index = store.recurring.FindByKey(key)) {
    MatchExceptionLinks(store.recurring.Item(*index), key, changed);
  }
}

void AppendOccurrences(WMCalendarStore& store, const WMRecurringItem& series) {
  const auto zone = static_cast<std::uint32_t>(WorkingZoneId());
  for (const std::int32_t date : series.Occurrences()) {
    auto item = MakeOccurrenceItem(series.detail, date);
    item->SetCreated(series.key);
    item->detail.SetOccurrence(true);
    item->header.zone = zone;
    store.occurrenceItems.Append(std::move(item));
  }
}

// The first date of the series, deleted or not.
std::optional<std::int32_t> FirstDate(const WMRecurringItem& item) {
  const std::vector<std::int32_t> occurrences = item.Occurrences();
  const std::vector<std::int32_t> deleted = item.DeletedDates();
  if (occurrences.empty() && deleted.empty()) return std::nullopt;
  if (deleted.empty()) return occurrences.front();
  if (occurrences.empty()) return deleted.front();
  return std::min(occurrences.front(), deleted.front());
}

void EventDatesFromItem(const WMRecurringItem& item, PWEventRecord& event) {
  const auto date = FirstDate(item);
  if (!date) return;
  WMBrokenTime start = SecondsToLocal(*date);
  start.hour = item.detail.StartHour();
  start.min = item.detail.StartMinute();
  start.sec = 0;
  WMBrokenTime end = SecondsToLocal(*date);
  end.hour = item.detail.EndHour();
  end.min = item.detail.EndMinute();
  end.sec = 0;
  const std::int32_t from = LocalToSeconds(start);
  const std::int32_t to = LocalToSeconds(end);
  event.StartDate(SecondsToStamp(from));
  event.EndDate(SecondsToStamp(to > from ? to : WrappingSum(from, 1)));
}

void ExceptionsToPattern(const WMRecurringItem& item, PWRecurrancePattern& pattern) {
  const std::vector<WMRecurringException> exceptions = item.Exceptions();
  if (exceptions.empty()) return;
  pattern.ClearExceptions();
  for (const WMRecurringException& stored : exceptions) {
    auto exception = std::make_unique<PWRecurranceException>();
    const PWDateTimeStamp date = StampOf(SecondsToLocal(stored.date));
    exception->Date.year = date.year;
    exception->Date.month = date.month;
    exception->Date.day = date.day;
    exception->Changes.Bit(PWRecurranceException::kDeleted, stored.deleted);
    if (!stored.deleted && stored.instance != nullptr) {
      FillExceptionFromItem(*stored.instance, *exception);
    }
    pattern.AddException(exception.release());
  }
}

}  // namespace

bool BuildRecurringItem(WMRecurringItem& item, PWEventRecord& event, std::string& message) {
  PWRecurrancePattern& pattern = *event.RecurrancePattern();
  PWDateTimeStamp start = event.StartDate();
  PWDateTimeStamp end = event.EndDate();
  ClampStampRange(start, end);
  if (!RuleOfPattern(pattern, item.rule)) return false;
  item.firstEnd = StampToSeconds(end);

  const WMBrokenTime firstEnd = SecondsToLocal(item.firstEnd);
  const auto rangeOf = pattern.NeverEnds() ? OpenRange : ClosedRange;
  const Range range = rangeOf(pattern, StampToSeconds(start), firstEnd);
  item.rule.firstDay = range.firstDay;
  item.rule.lastDay = range.lastDay;
  if (range.isCut) message = FormatString(strings::kSeriesTruncated, event.Subject());

  item.detail.SetSubject(event.Subject().View());
  item.detail.SetNotes(event.Notes().View());
  if (event.Alarm()) SetAlarm(item.detail, true, event.AlarmAdvance());
  SetRuleTimes(item, event);
  SetExceptions(item, pattern);
  return true;
}

std::int32_t AddRecurringEvent(WMCalendarStore& store, PWEventRecord& event, std::int32_t key,
                               std::string& message) {
  std::int32_t zone = WorkingZoneId();
  ZoneIdOfTimeZone(event.RecurrancePattern()->TimeZone, zone);
  const pw::calendar::ZoneScope scope(zone);
  auto item = std::make_unique<WMRecurringItem>();
  if (!BuildRecurringItem(*item, event, message)) return 1;
  item->modified = UtcNowSeconds();
  item->zone = zone;
  item->key = key;
  item->linked = true;
  const std::size_t index = store.recurring.Append(std::move(item));
  AppendOccurrences(store, store.recurring.Item(index));
  ApplyExceptions(store, event, key);
  return 0;
}

void RemoveRecurringItem(WMCalendarStore& store, std::size_t index) {
  const std::int32_t key = store.recurring.Key(index);
  store.recurring.ForgetInstances(key);
  const std::vector<std::size_t> ranks = store.occurrenceItems.WithCreated(key);
  std::for_each(ranks.rbegin(), ranks.rend(),
                [&](std::size_t rank) { store.occurrenceItems.Remove(rank); });
  store.recurring.Remove(index);
}

bool RecurringItemToEvent(const WMRecurringItem& item, PWEventRecord& event, std::string& message) {
  const pw::calendar::ZoneScope scope(item.zone);
  const PatternResult result = PatternOfRule(item.rule, event);
  if (result == PatternResult::kManifold) {
    message = FormatString(strings::kMonthlyByDayManifold, item.detail.subject.c_str());
  }
  if (result != PatternResult::kDone) return false;
  ExceptionsToPattern(item, *event.RecurrancePattern());
  event.Subject(item.detail.subject.c_str());
  event.Notes(item.detail.notes.c_str(), PWRecord::kWholeText);
  EventDatesFromItem(item, event);
  event.Alarm(item.detail.HasAlarm());
  event.AlarmAdvance(AlarmMinutes(item.detail));
  return true;
}
