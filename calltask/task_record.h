#pragma once

#include "calltask/day_record.h"
#include "calltask/task_format.h"

// A task. Its dates go from 1990 to 2005.
class CTaskRecord : public pw::DayRecord {
 public:
  // Also the start date in word B, as the local date of the start. From a file that one isn't read:
  // the day that the task is filed under gives the start.
  void SetStart(std::int32_t seconds) override;

  // There is none while the flag for none is set, and none where the date itself is none. 0, 0, 0
  // sets that, and clears the flag as any other.
  std::optional<pw::calltask::Date> DueDate() const override;
  void SetDueDate(const pw::calltask::Date& date) override;
  void ClearDueDate() override;

  EPWTaskRecordPriority Priority() const override;
  void SetPriority(EPWTaskRecordPriority priority) override;

  // Of the start date in word B.
  std::uint16_t FilingKey() const override;

  // The due date, ascending; tasks without one come first.
  std::int32_t Rank() const override;

  std::vector<std::uint32_t> Words() const override { return {flags, words.b, words.c}; }

  bool Take(std::string_view& bytes, pw::calltask::FormatVersion version) override;
  void Encode(pw::ByteWriter& out, pw::calltask::FormatVersion version) const override;

 protected:
  std::string ContentId() const override;

 private:
  pw::calltask::TaskWords words;
};
