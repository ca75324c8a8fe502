#pragma once

#include <cstdint>

#include "framework/record.h"

// How pressing a task is. A value outside the list is passed on as it is; who reads it takes it as
// normal.
enum EPWTaskRecordPriority : std::int32_t {
  kPriorityLow = 0,
  kPriorityNormal = 1,
  kPriorityHigh = 2,
};

// A record of the to-do list, which carries the organiser's calls too. It owns nothing: the wrapped
// record must not be null and must outlive it. Texts and stamps are read as live references into
// that record, valid until it is assigned or destroyed; null sets an empty text.
class PWTaskRecord {
 public:
  explicit PWTaskRecord(PWRecord* record) : record(record) {}
  virtual ~PWTaskRecord() = default;

  PWString& Subject() const;
  void Subject(const char* text);

  PWString& Note() const;
  void Note(const char* text);

  // Of no meaning while there is none. Setting a date doesn't say that there is one.
  PWDateTimeStamp& StartDate() const;
  void StartDate(const PWDateTimeStamp& stamp);
  PWDateTimeStamp& DueDate() const;
  void DueDate(const PWDateTimeStamp& stamp);

  bool NoStartDate() const;
  void NoStartDate(bool none);
  bool NoDueDate() const;
  void NoDueDate(bool none);

  EPWTaskRecordPriority Priority() const;
  void Priority(EPWTaskRecordPriority priority);

  bool Completed() const;
  void Completed(bool completed);

  // A telephone call, rather than a task.
  bool Call() const;
  void Call(bool call);

 private:
  PWRecord* record;
};
