#pragma once

#include <cstdint>
#include <optional>
#include <utility>
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

  // The dates that the rule gives and the series lacks, ascending; and an exception for each, with
  // those that were changed. Of a series that was linked by its occurrences they are worked out at
  // each call too, as they may take much more room than its file.
  std::vector<std::int32_t> DeletedDates() const;
  std::vector<WMRecurringException> Exceptions() const;

  // Files a date: the occurrence of the same local date is deleted. Behind the last earlier one; a
  // date twice is there twice, but for the first of all. Not for a series linked by its
  // occurrences.
  void AddDeletedDate(std::int32_t date);

  // Makes all dates deleted that the rule gives and that are none of these starts, which ascend.
  void LinkByStarts(std::vector<std::int32_t> starts) { foundStarts = std::move(starts); }

  bool linked = false;  // `key` is settled, as it is where the file has keys

 private:
  // The rule's dates by the clocks of the working zone, and which of them have an occurrence.
  struct Dates {
    std::vector<std::int32_t> all;
    std::vector<bool> found;
  };
  Dates LinkedDates() const;

  std::vector<std::int32_t> deletedDates;                // ascending
  std::vector<std::int32_t> takenOut;                    // all that were filed, as they came
  std::optional<std::vector<std::int32_t>> foundStarts;  // of a series linked by its occurrences
};

void AddDeletedDate(WMRecurringItem& item, std::int32_t date);
