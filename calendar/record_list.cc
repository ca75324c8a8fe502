#include "calendar/record_list.h"

#include "base/text.h"
#include "calendar/calendar_store.h"
#include "timeplace/zones.h"

namespace {

std::string IdOfItem(const WMEventItem& item) {
  return pw::FormatLong(item.Created()) + "+" + pw::FormatLong(item.Id());
}

std::optional<std::uint32_t> Behind(std::uint32_t first, std::optional<std::size_t> place) {
  if (!place) return std::nullopt;
  return first + static_cast<std::uint32_t>(*place);
}

std::optional<std::uint32_t> FindItem(WMCalendarStore& store, std::string_view id) {
  const std::size_t plus = id.find('+');
  if (plus == std::string_view::npos) return std::nullopt;
  const std::int32_t created = pw::ParseLong(id);
  return Behind(store.dataEnd, store.plainItems.Find(created, pw::ParseLong(id.substr(plus + 1))));
}

std::optional<std::uint32_t> FindById(WMCalendarStore& store, std::string_view id) {
  const std::size_t colon = id.find(':');
  if (colon == std::string_view::npos) return FindItem(store, id);
  const std::string_view list = id.substr(0, colon);
  if (list == "SpecialDay" || list == "MultiDay") return store.data.Find(std::string(id));
  if (list == "Recurring") return Behind(store.eventEnd, store.recurring.FindByIdText(id));
  return std::nullopt;
}

std::int32_t Word(std::uint32_t low, std::uint32_t high) {
  return static_cast<std::int32_t>(low | high << 16);
}

// The date at ten o'clock, so that the time of day doesn't count.
std::int32_t MorningOf(std::int32_t date) {
  constexpr std::int32_t kMorning = 10;
  WMBrokenTime local = SecondsToLocal(date);
  local.hour = kMorning;
  local.min = 0;
  local.sec = 0;
  return LocalToSeconds(local);
}

CrcValues ValuesOf(const WMRecurringItem& item) {
  const WMRecurrenceRule& rule = item.rule;
  CrcValues values{{item.detail.subject, item.detail.notes},
                   {rule.firstDay, rule.lastDay,
                    Word(rule.patternKind, static_cast<std::uint16_t>(rule.interval)),
                    static_cast<std::int32_t>(rule.dayMask),
                    Word(rule.weekMask | std::uint32_t{rule.weekdayMask} << 8, rule.reserved3)}};
  for (const std::int32_t date : item.DeletedDates()) values.words.push_back(MorningOf(date));
  return values;
}

CrcValues ValuesOf(const WMMultiDay& span) {
  return {{std::string(pw::datafile::SubjectText(span.subject))}, {span.start, span.end}};
}

CrcValues ValuesOf(const WMSpecialDay& day) {
  return {{std::string(pw::datafile::SubjectText(day.subject))}, pw::datafile::WordsOf(day)};
}

}  // namespace

std::string IdOfIndex(const WMCalendarStore& store, std::uint32_t index) {
  if (index >= store.recordEnd) return {};
  if (index >= store.eventEnd) return store.recurring.IdText(index - store.eventEnd);
  if (index < store.dataEnd) return store.data.IdText(index);
  return IdOfItem(store.plainItems.Item(index - store.dataEnd));
}

std::optional<std::uint32_t> IndexOfId(WMCalendarStore& store, std::string_view id) {
  store.RecountSections();
  const auto index = FindById(store, id);
  if (index) store.currentRecord = *index;
  return index;
}

std::optional<std::int32_t> StampOfIndex(const WMCalendarStore& store, std::uint32_t index) {
  if (index >= store.recordEnd) return std::nullopt;
  if (index >= store.eventEnd) return store.recurring.Stamp(index - store.eventEnd);
  if (index < store.dataEnd) return store.data.Stamp(index);
  return store.plainItems.Item(index - store.dataEnd).Modified();
}

std::optional<CrcValues> CrcValuesOfIndex(const WMCalendarStore& store, std::uint32_t index) {
  if (index >= store.recordEnd) return std::nullopt;
  if (index >= store.eventEnd) return ValuesOf(store.recurring.Item(index - store.eventEnd));
  if (index >= store.dataEnd) return std::nullopt;
  if (const WMMultiDay* span = store.data.MultiDay(index)) return ValuesOf(*span);
  return ValuesOf(*store.data.SpecialDay(index));
}
