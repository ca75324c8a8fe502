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
  // the deleted dates. They are worked out when first asked for, and held until they are forgotten.
  // A zone without a city, 0 among them, is the home zone; the working zone is the same afterwards.
  std::vector<std::int32_t>& Occurrences();

  // To be called when rule or zone have changed, and when the dates are of no more use: those of
  // all series of a file may take much more room than the file.
  void ForgetOccurrences();

  // Files a date, and takes the occurrence of the same local date out. The working zone must be the
  // item's.
  void AddDeletedDate(std::int32_t date);

  std::vector<std::int32_t> deletedDates;  // ascending
  bool linked = false;                     // `key` is settled

 private:
  void FileDeletedDate(std::int32_t date);

  std::vector<std::int32_t> occurrences;
  bool isExpanded = false;
};

void AddDeletedDate(WMRecurringItem& item, std::int32_t date);
