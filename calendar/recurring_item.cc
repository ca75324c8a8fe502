#include "calendar/recurring_item.h"

#include <algorithm>
#include <utility>

#include "calendar/rule_expansion.h"
#include "calendar/zone_scope.h"

namespace {

// The moments ascend.
void TakeOutMoments(std::vector<std::int32_t>& occurrences,
                    const std::vector<std::int32_t>& moments) {
  std::erase_if(occurrences, [&](std::int32_t occurrence) {
    return std::binary_search(moments.begin(), moments.end(), occurrence);
  });
}

}  // namespace

WMRecurringItem::WMRecurringItem(pw::recurring::Record record) : Record(std::move(record)) {
  deletedDates.reserve(exceptions.size());
  for (const WMRecurringException& exception : exceptions) AddDeletedDate(exception.date);
}

std::vector<std::int32_t> WMRecurringItem::Occurrences() const {
  const pw::calendar::ZoneScope scope(zone);
  std::vector<std::int32_t> occurrences;
  ExpandRule(rule, occurrences);
  if (deletesMoments) {
    TakeOutMoments(occurrences, deletedDates);
  } else {
    pw::calendar::TakeOutDates(occurrences, deletedDates);
  }
  return occurrences;
}

void WMRecurringItem::AddDeletedDate(std::int32_t date) {
  const auto at = std::lower_bound(deletedDates.begin(), deletedDates.end(), date);
  const bool isFirst = at == deletedDates.begin() && at != deletedDates.end() && *at == date;
  if (!isFirst) deletedDates.insert(at, date);
  deletesMoments = false;
}

void AddDeletedDate(WMRecurringItem& item, std::int32_t date) {
  item.AddDeletedDate(date);
}
