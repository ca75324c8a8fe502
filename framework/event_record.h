#pragma once

#include <cstdint>

#include "framework/record.h"
#include "framework/recurrence.h"

// Who is to see an event. A value outside the list is passed on as it is.
enum EPWEventRecordSensitivity : std::int32_t {
  kSensitivityNormal = 0,
  kSensitivityPersonal = 1,
  kSensitivityPrivate = 2,
  kSensitivityConfidential = 3,  // to the organiser the same as private
};

// A record of the calendar. Like all typed records it is made for the length of one operation: it
// owns nothing, and all its operations act on the wrapped record, which must not be null and must
// outlive it. Texts and stamps are read as live references into that record, valid until it is
// assigned or destroyed; null sets an empty text.
class PWEventRecord {
 public:
  explicit PWEventRecord(PWRecord* record) : record(record) {}
  virtual ~PWEventRecord() = default;

  PWString& Subject() const;
  void Subject(const char* text);

  PWString& Location() const;
  void Location(const char* text);

  // Takes the text up to its zero byte, and `size` bytes at most; `PWRecord::kWholeText` takes it
  // whole.
  PWString& Notes() const;
  void Notes(const char* text, std::uint32_t size);

  // UTC for an event with times, local dates for one that lasts all day.
  PWDateTimeStamp& StartDate() const;
  void StartDate(const PWDateTimeStamp& stamp);
  PWDateTimeStamp& EndDate() const;
  void EndDate(const PWDateTimeStamp& stamp);

  bool AllDay() const;
  void AllDay(bool allDay);

  bool Alarm() const;
  void Alarm(bool alarm);

  // Minutes before the start.
  std::int32_t AlarmAdvance() const;
  void AlarmAdvance(std::int32_t minutes);

  EPWEventRecordSensitivity Sensitivity() const;
  void Sensitivity(EPWEventRecordSensitivity sensitivity);

  // Whether there is a pattern. Set on, a pattern is made, or the one that is there gets the type
  // and keeps all else. Set off, the pattern is freed, and the type has no meaning.
  bool Recurring() const;
  void Recurring(bool on, ERecurranceType type);

  // Owned by the record; null when the event doesn't recur.
  PWRecurrancePattern* RecurrancePattern() const;

 private:
  PWRecord* record;
};
