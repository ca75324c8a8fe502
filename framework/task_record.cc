#include "framework/task_record.h"

namespace {

// Texts.
constexpr PWPropertyId kSubject{1};
constexpr PWPropertyId kNote{2};

// Stamps.
constexpr PWPropertyId kStartDate{1};
constexpr PWPropertyId kDueDate{2};

// Numbers.
constexpr PWPropertyId kNoStartDate{1};
constexpr PWPropertyId kNoDueDate{2};
constexpr PWPropertyId kPriority{3};
constexpr PWPropertyId kCompleted{4};
constexpr PWPropertyId kCall{5};

}  // namespace

PWString& PWTaskRecord::Subject() const {
  return record->Text(kSubject);
}

void PWTaskRecord::Subject(const char* text) {
  record->SetText(kSubject, text);
}

PWString& PWTaskRecord::Note() const {
  return record->Text(kNote);
}

void PWTaskRecord::Note(const char* text) {
  record->SetText(kNote, text);
}

PWDateTimeStamp& PWTaskRecord::StartDate() const {
  return record->Stamp(kStartDate);
}

void PWTaskRecord::StartDate(const PWDateTimeStamp& stamp) {
  record->Stamp(kStartDate) = stamp;
}

PWDateTimeStamp& PWTaskRecord::DueDate() const {
  return record->Stamp(kDueDate);
}

void PWTaskRecord::DueDate(const PWDateTimeStamp& stamp) {
  record->Stamp(kDueDate) = stamp;
}

bool PWTaskRecord::NoStartDate() const {
  return record->Flag(kNoStartDate);
}

void PWTaskRecord::NoStartDate(bool none) {
  record->SetFlag(kNoStartDate, none);
}

bool PWTaskRecord::NoDueDate() const {
  return record->Flag(kNoDueDate);
}

void PWTaskRecord::NoDueDate(bool none) {
  record->SetFlag(kNoDueDate, none);
}

EPWTaskRecordPriority PWTaskRecord::Priority() const {
  return static_cast<EPWTaskRecordPriority>(record->Number(kPriority));
}

void PWTaskRecord::Priority(EPWTaskRecordPriority priority) {
  record->Number(kPriority) = priority;
}

bool PWTaskRecord::Completed() const {
  return record->Flag(kCompleted);
}

void PWTaskRecord::Completed(bool completed) {
  record->SetFlag(kCompleted, completed);
}

bool PWTaskRecord::Call() const {
  return record->Flag(kCall);
}

void PWTaskRecord::Call(bool call) {
  record->SetFlag(kCall, call);
}
