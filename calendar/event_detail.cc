#include "calendar/event_detail.h"

#include <algorithm>

namespace {

constexpr std::uint32_t kOccurrence = 1U << 0;
constexpr std::uint32_t kAlarm = 1U << 1;
constexpr std::uint32_t kHasNotes = 1U << 5;
constexpr std::uint32_t kHasSubject = 1U << 6;

// The places of an hour and of a minute.
struct Bits {
  std::uint32_t shift;
  std::uint32_t mask;
};
constexpr Bits kEndMinute = {0, 0x3F};
constexpr Bits kEndHour = {8, 0x1F};
constexpr Bits kStartMinute = {16, 0x3F};
constexpr Bits kStartHour = {24, 0x1F};
constexpr Bits kAlarmMinutes = {16, 0x3F};
constexpr Bits kAlarmHours = {24, 0x1F};

std::int32_t Get(std::uint32_t word, const Bits& bits) {
  return static_cast<std::int32_t>(word >> bits.shift & bits.mask);
}

void Set(std::uint32_t& word, const Bits& bits, std::int32_t value) {
  word &= ~(bits.mask << bits.shift);
  word |= (static_cast<std::uint32_t>(value) & bits.mask) << bits.shift;
}

void SetFlag(std::uint32_t& word, std::uint32_t flag, bool value) {
  word = value ? word | flag : word & ~flag;
}

// What ends a subject or a slot.
constexpr bool IsStructure(char c) {
  return c == '\x09' || c == '\x7F';
}

std::string Blanked(std::string_view text) {
  std::string result(text);
  std::replace_if(result.begin(), result.end(), IsStructure, ' ');
  return result;
}

}  // namespace

namespace pw::calendar {

std::string StoredText(std::string_view text) {
  std::string stored = Blanked(text);
  std::replace(stored.begin(), stored.end(), '~', '\x10');
  return stored;
}

void EncodeText(ByteWriter& out, std::string_view text) {
  const bool isPlain = text.find('~') == text.npos && text.find('\x7F') == text.npos &&
                       text.find('\x09') == text.npos;
  if (isPlain) return out.Bytes(text);
  out.Bytes(StoredText(text));
}

std::string TextOfStored(std::string_view stored) {
  std::string text(stored);
  if (text.find('\x10') != text.npos) std::replace(text.begin(), text.end(), '\x10', '~');
  return text;
}

}  // namespace pw::calendar

std::int32_t WMEventDetail::StartHour() const {
  return Get(timeWord, kStartHour);
}
std::int32_t WMEventDetail::StartMinute() const {
  return Get(timeWord, kStartMinute);
}
std::int32_t WMEventDetail::EndHour() const {
  return Get(timeWord, kEndHour);
}
std::int32_t WMEventDetail::EndMinute() const {
  return Get(timeWord, kEndMinute);
}

void WMEventDetail::SetStartTime(std::int32_t hour, std::int32_t minute) {
  Set(timeWord, kStartHour, hour);
  Set(timeWord, kStartMinute, minute);
}

void WMEventDetail::SetEndTime(std::int32_t hour, std::int32_t minute) {
  Set(timeWord, kEndHour, hour);
  Set(timeWord, kEndMinute, minute);
}

bool WMEventDetail::IsOccurrence() const {
  return (flagWord & kOccurrence) != 0;
}

void WMEventDetail::SetOccurrence(bool occurrence) {
  SetFlag(flagWord, kOccurrence, occurrence);
}

bool WMEventDetail::HasAlarm() const {
  return (flagWord & kAlarm) != 0;
}

std::int32_t WMEventDetail::AlarmHours() const {
  return Get(flagWord, kAlarmHours);
}

std::int32_t WMEventDetail::AlarmMinutes() const {
  return Get(flagWord, kAlarmMinutes);
}

void WMEventDetail::SetAlarm(bool alarm) {
  SetFlag(flagWord, kAlarm, alarm);
}

void WMEventDetail::SetAlarmHours(std::int32_t hours) {
  Set(flagWord, kAlarmHours, hours);
}

void WMEventDetail::SetAlarmMinutes(std::int32_t minutes) {
  Set(flagWord, kAlarmMinutes, minutes);
}

void WMEventDetail::SetSubject(std::string_view text) {
  subject = Blanked(text);
  SetFlag(flagWord, kHasSubject, !text.empty());
}

void WMEventDetail::SetNotes(std::string_view text) {
  notes = Blanked(text);
  SetFlag(flagWord, kHasNotes, !text.empty());
}
