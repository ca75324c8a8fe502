#pragma once

#include "calltask/call_format.h"
#include "calltask/day_record.h"

// A call. Without a high-priority flag its priority is normal.
class WMCallRec : public pw::DayRecord {
 public:
  // Years go from 1990 to 2029; 0, 1, 0 is none, and leaves the flags alone as `ClearDueDate` does.
  std::optional<pw::calltask::Date> DueDate() const override;
  void SetDueDate(const pw::calltask::Date& date) override;
  void ClearDueDate() override { due = pw::calltask::kNoCallDueDate; }

  EPWTaskRecordPriority Priority() const override;
  void SetPriority(EPWTaskRecordPriority priority) override;

  // Of the local date of the start.
  std::uint16_t FilingKey() const override;

  bool Take(std::string_view& bytes, pw::calltask::FormatVersion version) override;
  void Encode(pw::ByteWriter& out, pw::calltask::FormatVersion version) const override;

 protected:
  std::string ContentId() const override;

 private:
  pw::calltask::Date due = pw::calltask::kNoCallDueDate;
};
