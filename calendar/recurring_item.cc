#include "calendar/recurring_item.h"

#include <algorithm>
#include <utility>

#include "calendar/rule_expansion.h"
#include "calendar/zone_scope.h"

WMRecurringItem::WMRecurringItem(pw::recurring::Record record) : Record(std::move(record)) {
  deletedDates.reserve(exceptions.size());
  for (const WMRecurringException& exception : exceptions) FileDeletedDate(exception.date);
}

std::vector<std::int32_t>& WMRecurringItem::Occurrences() {
  if (isExpanded) return occurrences;
  const pw::calendar::ZoneScope scope(zone);
  ExpandRule(rule, occurrences);
  pw::calendar::TakeOutDates(occurrences, deletedDates);
  isExpanded = true;
  return occurrences;
}

void WMRecurringItem::ForgetOccurrences() {
  occurrences = std::vector<std::int32_t>();
  isExpanded = false;
}

void WMRecurringItem::AddDeletedDate(std::int32_t date) {
  FileDeletedDate(date);
  if (isExpanded) pw::calendar::TakeOutDates(occurrences, {date});
}

// Behind the last earlier one. A date twice is there twice, but for the first of all.
void WMRecurringItem::FileDeletedDate(std::int32_t date) {
  const auto at = std::lower_bound(deletedDates.begin(), deletedDates.end(), date);
  const bool isFirst = at == deletedDates.begin() && at != deletedDates.end() && *at == date;
  if (!isFirst) deletedDates.insert(at, date);
}

void AddDeletedDate(WMRecurringItem& item, std::int32_t date) {
  item.AddDeletedDate(date);
}
