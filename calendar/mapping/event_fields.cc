#include "calendar/mapping/event_fields.h"

#include <string_view>

#include "calendar/calendar_state.h"
#include "framework/event_record.h"
#include "framework/recurrence.h"
#include "timeplace/zones.h"

namespace {

constexpr std::size_t kLongestNotes = 2048;
constexpr std::int32_t kMinutesPerHour = 60;

// What an item is filled with.
struct Fields {
  std::string_view subject;
  std::string_view notes;
  std::string_view location;
  const PWDateTimeStamp& start;
  const PWDateTimeStamp& end;
  bool alarm;
  std::int32_t alarmAdvance;
  EPWEventRecordSensitivity sensitivity;
};

std::int32_t StoredSensitivity(EPWEventRecordSensitivity sensitivity) {
  switch (sensitivity) {
    case kSensitivityPersonal:
      return 1;
    case kSensitivityPrivate:
    case kSensitivityConfidential:
      return 2;
    default:
      return 0;
  }
}

EPWEventRecordSensitivity SensitivityOfStored(std::int32_t stored) {
  switch (stored) {
    case 1:
      return kSensitivityPersonal;
    case 2:
      return kSensitivityPrivate;
    default:
      return kSensitivityNormal;
  }
}

std::string_view ShortenedNotes(std::string_view notes) {
  if (notes.size() <= kLongestNotes) return notes;
  NotesShortened() = true;
  return notes.substr(0, kLongestNotes);
}

void Fill(WMEventItem& item, const Fields& fields) {
  item.detail.SetSubject(fields.subject);
  const std::int32_t start = StampToSeconds(fields.start);
  item.SetStartTime(start);
  item.SetStart(start);
  const std::int32_t end = StampToSeconds(fields.end);
  item.SetEndTime(end);
  item.SetEnd(end);
  item.detail.SetNotes(ShortenedNotes(fields.notes));
  item.header.place.first.text = fields.location;
  SetAlarm(item.detail, fields.alarm, fields.alarmAdvance);
  item.SetSensitivity(StoredSensitivity(fields.sensitivity));
  item.SetModified(UtcNowSeconds());
  item.header.zone = static_cast<std::uint32_t>(HomeZoneId());
}

Fields FieldsOf(const PWEventRecord& event) {
  return {event.Subject().View(), event.Notes().View(), event.Location().View(),
          event.StartDate(),      event.EndDate(),      event.Alarm(),
          event.AlarmAdvance(),   event.Sensitivity()};
}

// A moment on the date of `local` at that hour and minute.
std::int32_t AtTime(WMBrokenTime local, std::int32_t hour, std::int32_t minute) {
  local.hour = hour;
  local.min = minute;
  local.sec = 0;
  return LocalToSeconds(local);
}

}  // namespace

void SetAlarm(WMEventDetail& detail, bool alarm, std::int32_t minutes) {
  detail.SetAlarm(alarm);
  if (!alarm) return;
  detail.SetAlarmHours(minutes / kMinutesPerHour);
  detail.SetAlarmMinutes(minutes % kMinutesPerHour);
}

std::int32_t AlarmMinutes(const WMEventDetail& detail) {
  return detail.AlarmHours() * kMinutesPerHour + detail.AlarmMinutes();
}

void FillItemFromEvent(const PWEventRecord& event, WMEventItem& item) {
  Fill(item, FieldsOf(event));
}

void FillEventFromItem(const WMEventItem& item, PWEventRecord& event) {
  event.Subject(item.Subject().c_str());
  event.StartDate(SecondsToStamp(item.Start()));
  event.EndDate(SecondsToStamp(item.End()));
  event.Location(item.header.place.first.text.c_str());
  event.Notes(item.Notes().c_str(), kLongestNotes);
  event.Alarm(item.detail.HasAlarm());
  event.AlarmAdvance(AlarmMinutes(item.detail));
  event.Sensitivity(SensitivityOfStored(item.Sensitivity()));
}

std::unique_ptr<WMEventItem> MakeOccurrenceItem(const WMEventDetail& detail, std::int32_t date) {
  auto item = std::make_unique<WMEventItem>();
  item->detail = detail;
  const WMBrokenTime local = SecondsToLocal(date);
  item->SetStart(AtTime(local, detail.StartHour(), detail.StartMinute()));
  item->SetEnd(AtTime(local, detail.EndHour(), detail.EndMinute()));
  return item;
}

std::unique_ptr<WMEventItem> MakeChangedOccurrenceItem(const PWEventRecord& event,
                                                       const PWRecurranceException& exception) {
  const auto chosen = [&](std::uint8_t change, const PWString& changed, const PWString& own) {
    return exception.HasChange(change) ? changed.View() : own.View();
  };
  auto item = std::make_unique<WMEventItem>();
  Fill(*item,
       {chosen(PWRecurranceException::kSubjectChanged, exception.Subject, event.Subject()),
        chosen(PWRecurranceException::kNotesChanged, exception.Notes, event.Notes()),
        chosen(PWRecurranceException::kLocationChanged, exception.Location, event.Location()),
        exception.StartDate, exception.EndDate,
        exception.HasChange(PWRecurranceException::kHasAlarm), exception.AlarmAdvance.value,
        event.Sensitivity()});
  item->SetChanged(true);
  return item;
}

void FillExceptionFromItem(const WMEventItem& instance, PWRecurranceException& exception) {
  exception.Changes.Bit(PWRecurranceException::kSubjectChanged, true);
  exception.Subject = instance.Subject().c_str();
  exception.StartDate = SecondsToStamp(instance.Start());
  exception.EndDate = SecondsToStamp(instance.End());
  exception.Changes.Bit(PWRecurranceException::kLocationChanged, true);
  exception.Location = instance.header.place.first.text.c_str();
  exception.Changes.Bit(PWRecurranceException::kNotesChanged, true);
  exception.Notes = instance.Notes().c_str();
  exception.Changes.Bit(PWRecurranceException::kHasAlarm, instance.detail.HasAlarm());
  exception.AlarmAdvance.value = AlarmMinutes(instance.detail);
}
