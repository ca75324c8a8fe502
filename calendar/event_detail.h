#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "base/cursor.h"

// What single items and series of the calendar say of an event, in the two words and two texts that
// the event file and the recurring file have in common.
namespace pw::calendar {

// Every byte of a word has its top bit set, which keeps the bytes of structure out.
inline constexpr std::uint32_t kTopBits = 0x80808080;

// In memory a text holds "~"; in the files that is 0x10, as 0x7E is a byte of structure, and what
// else is one, 0x09 and 0x7F, is a blank.
std::string StoredText(std::string_view text);
std::string TextOfStored(std::string_view stored);
void EncodeText(ByteWriter& out, std::string_view text);  // as `StoredText` gives it

}  // namespace pw::calendar

// Time word:
//
//   bits      meaning
//   0 to 5    minute of the end
//   8 to 12   hour of the end
//   16 to 21  minute of the start
//   24 to 28  hour of the start
//   7, 15, 23, 31  1
//
// Flag word:
//
//   bits      meaning
//   0         an occurrence that was made from a series
//   1         has an alarm
//   5         has notes
//   6         has a subject
//   16 to 21  alarm lead, the minutes beside whole hours
//   24 to 28  alarm lead, whole hours
//   7, 15, 23, 31  1
//
// All other bits are carried.
struct WMEventDetail {
  std::uint32_t timeWord = pw::calendar::kTopBits;
  std::uint32_t flagWord = pw::calendar::kTopBits;
  std::string subject;  // both in the organiser's code page
  std::string notes;

  std::int32_t StartHour() const;
  std::int32_t StartMinute() const;
  std::int32_t EndHour() const;
  std::int32_t EndMinute() const;

  // Hours from 0 to 31, minutes from 0 to 63; higher bits are cut off.
  void SetStartTime(std::int32_t hour, std::int32_t minute);
  void SetEndTime(std::int32_t hour, std::int32_t minute);

  bool IsOccurrence() const;
  void SetOccurrence(bool occurrence);

  // Lead hours from 0 to 31, minutes from 0 to 63, as the times.
  bool HasAlarm() const;
  std::int32_t AlarmHours() const;
  std::int32_t AlarmMinutes() const;
  void SetAlarm(bool alarm);
  void SetAlarmHours(std::int32_t hours);
  void SetAlarmMinutes(std::int32_t minutes);

  // With a blank for each 0x09 and 0x7F. The flag for a text that isn't empty follows.
  void SetSubject(std::string_view text);
  void SetNotes(std::string_view text);
};
