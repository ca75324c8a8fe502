#include "calendar/recurring_item.h"

#include <algorithm>
#include <utility>

#include "calendar/rule_expansion.h"
#include "calendar/zone_scope.h"

namespace {

// Which of the rule's dates has an occurrence. These ascend.
std::vector<bool> FindDates(const std::vector<std::int32_t>& expected,
                            const std::vector<std::int32_t>& dates) {
  std::vector<bool> found(expected.size(), false);
  std::size_t next = 0;
  for (std::size_t k = 0; k < expected.size() && next < dates.size(); ++k) {
    const auto isBefore = [&](std::int32_t date, std::int32_t wanted) {
      return CompareLocalDates(date, wanted) < 0;
    };
    const std::int32_t order = CompareLocalDates(dates[next], expected[k]);
    if (order == 0) {
      found[k] = true;
      ++next;
    } else if (order < 0) {
      // An occurrence on a day that the rule doesn't know: look behind it.
      const auto from = dates.begin() + static_cast<std::ptrdiff_t>(next);
      const auto later = std::lower_bound(from + 1, dates.end(), expected[k], isBefore);
      if (later == dates.end()) {
        ++next;
      } else {
        found[k] = CompareLocalDates(*later, expected[k]) == 0;
        next = static_cast<std::size_t>(later - dates.begin());
      }
    }
  }
  return found;
}

}  // namespace

WMRecurringItem::WMRecurringItem(pw::recurring::Record record) : Record(std::move(record)) {
  deletedDates.reserve(exceptions.size());
  takenOut.reserve(exceptions.size());
  for (const WMRecurringException& exception : exceptions) AddDeletedDate(exception.date);
}

WMRecurringItem::Dates WMRecurringItem::LinkedDates() const {
  Dates dates;
  ExpandRule(rule, dates.all);
  dates.found = FindDates(dates.all, *foundStarts);
  return dates;
}

std::vector<std::int32_t> WMRecurringItem::Occurrences() const {
  const pw::calendar::ZoneScope scope(zone);
  std::vector<std::int32_t> occurrences;
  if (!foundStarts) {
    ExpandRule(rule, occurrences);
    pw::calendar::TakeOutDates(occurrences, takenOut);
    return occurrences;
  }
  const Dates dates = LinkedDates();
  for (std::size_t i = 0; i < dates.all.size(); ++i) {
    if (dates.found[i]) occurrences.push_back(dates.all[i]);
  }
  return occurrences;
}

std::vector<std::int32_t> WMRecurringItem::DeletedDates() const {
  if (!foundStarts) return deletedDates;
  const pw::calendar::ZoneScope scope(zone);
  const Dates dates = LinkedDates();
  std::vector<std::int32_t> missing;
  for (std::size_t i = 0; i < dates.all.size(); ++i) {
    if (!dates.found[i]) missing.push_back(dates.all[i]);
  }
  std::sort(missing.begin(), missing.end());
  return missing;
}

std::vector<WMRecurringException> WMRecurringItem::Exceptions() const {
  if (!foundStarts) return exceptions;
  std::vector<WMRecurringException> missing;
  for (const std::int32_t date : DeletedDates()) {
    WMRecurringException& exception = missing.emplace_back();
    exception.deleted = true;
    exception.date = date;
  }
  return missing;
}

void WMRecurringItem::AddDeletedDate(std::int32_t date) {
  takenOut.push_back(date);
  const auto at = std::lower_bound(deletedDates.begin(), deletedDates.end(), date);
  const bool isFirst = at == deletedDates.begin() && at != deletedDates.end() && *at == date;
  if (!isFirst) deletedDates.insert(at, date);
}

void AddDeletedDate(WMRecurringItem& item, std::int32_t date) {
  item.AddDeletedDate(date);
}
