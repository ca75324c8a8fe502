#include "framework/event_record.h"

#include <memory>
#include <utility>

namespace {

// Texts.
constexpr PWPropertyId kSubject{1};
constexpr PWPropertyId kLocation{2};
constexpr PWPropertyId kNotes{3};

// Stamps.
constexpr PWPropertyId kStartDate{1};
constexpr PWPropertyId kEndDate{2};

// Numbers.
constexpr PWPropertyId kAllDay{1};
constexpr PWPropertyId kAlarm{2};
constexpr PWPropertyId kAlarmAdvance{3};
constexpr PWPropertyId kSensitivity{4};

}  // namespace

PWString& PWEventRecord::Subject() const {
  return record->Text(kSubject);
}

void PWEventRecord::Subject(const char* text) {
  record->SetText(kSubject, text);
}

PWString& PWEventRecord::Location() const {
  return record->Text(kLocation);
}

void PWEventRecord::Location(const char* text) {
  record->SetText(kLocation, text);
}

PWString& PWEventRecord::Notes() const {
  return record->Text(kNotes);
}

void PWEventRecord::Notes(const char* text, std::uint32_t size) {
  record->SetText(kNotes, text, size);
}

PWDateTimeStamp& PWEventRecord::StartDate() const {
  return record->Stamp(kStartDate);
}

void PWEventRecord::StartDate(const PWDateTimeStamp& stamp) {
  record->Stamp(kStartDate) = stamp;
}

PWDateTimeStamp& PWEventRecord::EndDate() const {
  return record->Stamp(kEndDate);
}

void PWEventRecord::EndDate(const PWDateTimeStamp& stamp) {
  record->Stamp(kEndDate) = stamp;
}

bool PWEventRecord::AllDay() const {
  return record->Flag(kAllDay);
}

void PWEventRecord::AllDay(bool allDay) {
  record->SetFlag(kAllDay, allDay);
}

bool PWEventRecord::Alarm() const {
  return record->Flag(kAlarm);
}

void PWEventRecord::Alarm(bool alarm) {
  record->SetFlag(kAlarm, alarm);
}

std::int32_t PWEventRecord::AlarmAdvance() const {
  return record->Number(kAlarmAdvance);
}

void PWEventRecord::AlarmAdvance(std::int32_t minutes) {
  record->Number(kAlarmAdvance) = minutes;
}

EPWEventRecordSensitivity PWEventRecord::Sensitivity() const {
  return static_cast<EPWEventRecordSensitivity>(record->Number(kSensitivity));
}

void PWEventRecord::Sensitivity(EPWEventRecordSensitivity sensitivity) {
  record->Number(kSensitivity) = sensitivity;
}

bool PWEventRecord::Recurring() const {
  return RecurrancePattern() != nullptr;
}

void PWEventRecord::Recurring(bool on, ERecurranceType type) {
  if (!on) {
    record->SetPattern(nullptr);
    return;
  }
  if (!Recurring()) record->SetPattern(std::make_unique<PWRecurrancePattern>());
  RecurrancePattern()->Type(type);
}

PWRecurrancePattern* PWEventRecord::RecurrancePattern() const {
  return dynamic_cast<PWRecurrancePattern*>(record->Pattern());
}
