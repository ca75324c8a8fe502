#include "framework/values.h"

#include <new>

#include "base/process_wide.h"
#include "framework/crc.h"
#include "platform/platform.h"

namespace {

PWRuntimeClass numberClass("PWNumber", []() -> PWObject* { return new (std::nothrow) PWNumber; });
PWRuntimeClass bitFieldClass("PWBitField",
                             []() -> PWObject* { return new (std::nothrow) PWBitField; });
PWRuntimeClass timeZoneClass("PWTimeZone",
                             []() -> PWObject* { return new (std::nothrow) PWTimeZone; });

pw::ProcessWide<PWDateTimeStamp> presentTime;

void TransferDate(PWArchive& archive, SYSTEMTIME& date) {
  for (std::uint16_t* word : {&date.wYear, &date.wMonth, &date.wDayOfWeek, &date.wDay, &date.wHour,
                              &date.wMinute, &date.wSecond, &date.wMilliseconds}) {
    archive.Transfer(*word);
  }
}

void TransferName(PWArchive& archive, char16_t (&name)[32]) {
  for (char16_t& unit : name) {
    auto word = static_cast<std::uint16_t>(unit);
    archive.Transfer(word);
    unit = word;
  }
}

}  // namespace

void PWNumber::Serialize(PWArchive& archive) {
  archive.Transfer(value);
}

PWRuntimeClass* PWNumber::RuntimeClass() {
  return &numberClass;
}

std::int32_t PWNumber::Compare(PWObject* other) {
  const auto* number = dynamic_cast<PWNumber*>(other);
  if (number == nullptr) return -1;
  if (value == number->value) return 0;
  return value < number->value ? -1 : 1;
}

void PWBitField::Bit(std::uint8_t index, bool value) {
  if (index > 31) return;
  const std::uint32_t mask = 1U << index;
  bits = value ? bits | mask : bits & ~mask;
}

void PWBitField::Serialize(PWArchive& archive) {
  auto word = static_cast<std::int32_t>(bits);
  archive.Transfer(word);
  bits = static_cast<std::uint32_t>(word);
}

PWRuntimeClass* PWBitField::RuntimeClass() {
  return &bitFieldClass;
}

PWDateTimeStamp& PWDateTimeStamp::operator=(const pw::CivilTime& time) {
  year = static_cast<std::uint16_t>(time.year);
  month = static_cast<std::uint8_t>(time.month);
  day = static_cast<std::uint8_t>(time.day);
  hour = static_cast<std::uint8_t>(time.hour);
  minute = static_cast<std::uint8_t>(time.minute);
  second = static_cast<std::uint8_t>(time.second);
  return *this;
}

PWDateTimeStamp& PWDateTimeStamp::CurrentTime() {
  pw::Clock& clock = *pw::CurrentPlatform().clock;
  *presentTime = clock.Local(clock.Now());
  return *presentTime;
}

bool PWTimeZone::operator==(const TIME_ZONE_INFORMATION& other) const {
  return zone.Bias == other.Bias && zone.StandardBias == other.StandardBias &&
         zone.DaylightBias == other.DaylightBias && zone.StandardDate == other.StandardDate &&
         zone.DaylightDate == other.DaylightDate;
}

void PWTimeZone::Serialize(PWArchive& archive) {
  archive.Transfer(zone.Bias);
  TransferName(archive, zone.StandardName);
  TransferDate(archive, zone.StandardDate);
  archive.Transfer(zone.StandardBias);
  TransferName(archive, zone.DaylightName);
  TransferDate(archive, zone.DaylightDate);
  archive.Transfer(zone.DaylightBias);
}

PWRuntimeClass* PWTimeZone::RuntimeClass() {
  return &timeZoneClass;
}

void PWCrc::Add(const PWString& text) {
  value = pw::FoldText(value, text.View());
}
