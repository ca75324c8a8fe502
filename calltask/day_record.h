#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "base/cursor.h"
#include "calltask/frame_format.h"
#include "calltask/record_format.h"
#include "framework/object.h"
#include "framework/task_record.h"
#include "timeplace/date.h"

namespace pw {

class RecordDay;

// A call or a task in memory. All texts are of the organiser's code page.
class DayRecord : public PWObject, public calltask::RecordFields {
 public:
  // With a new unique id, changed now. One count of ids serves calls and tasks, and those that are
  // then read from a file too.
  DayRecord();
  DayRecord(const DayRecord&) = delete;
  DayRecord& operator=(const DayRecord&) = delete;

  bool IsRecurring() const { return (flags & calltask::kRecurring) != 0; }
  bool IsCompleted() const { return (flags & calltask::kCompleted) != 0; }
  void SetCompleted(bool completed) { SetFlag(calltask::kCompleted, completed); }

  // Both with blanks for what a file can't hold in them.
  void SetTexts(std::string_view newSubject, std::string_view newNote);

  // What the engine knows the record by. At version 30 it is made of the content, and not unique.
  std::string IdText(calltask::FormatVersion version) const;

  // A number that all records of an id share: at version 50 only they, at version 30 hardly any
  // others. Of an id text nothing where no record can have it.
  std::uint64_t IdDigest(calltask::FormatVersion version) const;
  static std::optional<std::uint64_t> DigestOfId(const std::string& id,
                                                 calltask::FormatVersion version);

  // The start, in seconds since 1970 UTC. The day that the record is filed under doesn't follow.
  virtual void SetStart(std::int32_t seconds) { start = seconds; }

  // Dates are taken with their year brought into those that the organiser shows.
  virtual std::optional<calltask::Date> DueDate() const = 0;
  virtual void SetDueDate(const calltask::Date& date) = 0;
  virtual void ClearDueDate() = 0;

  // Takes any number; what isn't in the list is normal.
  virtual EPWTaskRecordPriority Priority() const = 0;
  virtual void SetPriority(EPWTaskRecordPriority priority) = 0;

  // The key that the start asks for.
  virtual std::uint16_t FilingKey() const = 0;

  // Records of a day are written by ascending ranks, those of one rank as they came.
  virtual std::int32_t Rank() const { return 0; }

  // What a change shows on beside the texts, in the order of a CRC over them.
  virtual std::vector<std::uint32_t> Words() const { return {flags}; }

  // Reads the record off the front of a block's bytes. False where there is no whole one.
  virtual bool Take(std::string_view& bytes, calltask::FormatVersion version) = 0;
  virtual void Encode(ByteWriter& out, calltask::FormatVersion version) const = 0;

  std::int32_t start = 0;            // 0 for none
  std::optional<std::uint16_t> key;  // of the day that it was last filed under
  RecordDay* day = nullptr;          // that day, while the store's map has it and it has the record

 protected:
  void SetFlag(std::uint32_t bit, bool value) { flags = value ? flags | bit : flags & ~bit; }

  // The id at version 30.
  virtual std::string ContentId() const = 0;

  // The subject as a text of the engine's, which a zero ends.
  std::string_view SubjectText() const;
};

// The filing key of a broken time.
std::uint16_t FilingKeyOf(const WMBrokenTime& date);

}  // namespace pw
