#pragma once

#include <cstdint>
#include <vector>

#include "calendar/recurring_format.h"

// A series: what the recurring file says of it, and what follows from that. All is called on the
// engine's one thread.
class WMRecurringItem : public pw::recurring::Record {
 public:
  // As a new one is, and as a record was read: the dates of its exceptions are its deleted dates.
  WMRecurringItem() = default;
  explicit WMRecurringItem(pw::recurring::Record record);

  // The moments of its occurrences: those that the rule gives by the clocks of its zone, without
  // the deleted dates. They are worked out at each call, as those of all series of a file may take
  // much more room than the file. A zone without a city, 0 among them, is the home zone; the
  // working zone is the same afterwards.
  std::vector<std::int32_t> Occurrences() const;

  // Files a date: the occurrence of the same local date is deleted. Behind the last earlier one; a
  // date twice is there twice, but for the first of all. All deleted dates are days from then on.
  void AddDeletedDate(std::int32_t date);

  std::vector<std::int32_t> deletedDates;  // ascending
  bool linked = false;                     // `key` is settled, as it is where the file has keys

  // Each deleted date is the very moment of an occurrence, and takes out that one alone. Otherwise
  // they are looked for as the organiser does, which in a list that doesn't ascend misses some.
  bool deletesMoments = false;
};

void AddDeletedDate(WMRecurringItem& item, std::int32_t date);
