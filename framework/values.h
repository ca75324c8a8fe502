#pragma once

#include <cstdint>
#include <string_view>

#include "framework/object.h"
#include "framework/string.h"

namespace pw {
struct CivilTime;
}

class PWNumber : public PWObject {
 public:
  PWNumber() = default;
  explicit PWNumber(std::int32_t value) : value(value) {}

  void Serialize(PWArchive& archive) override;
  PWRuntimeClass* RuntimeClass() override;
  PWObject* Clone() override { return new PWNumber(value); }

  // Negative, 0 or positive, as this number is less than, equal to or above another `PWNumber`.
  std::int32_t Compare(PWObject* other) override;

  std::int32_t value = 0;
};

class PWBitField : public PWObject {
 public:
  PWBitField() = default;
  explicit PWBitField(std::uint32_t bits) : bits(bits) {}

  // Sets or clears one bit, 0 being the least significant. An index above 31 changes nothing.
  void Bit(std::uint8_t index, bool value);

  void Serialize(PWArchive& archive) override;
  PWRuntimeClass* RuntimeClass() override;
  PWObject* Clone() override { return new PWBitField(bits); }

  std::uint32_t bits = 0;
};

// A calendar date and time without a zone; all zero when fresh.
struct PWDateTimeStamp {
  PWDateTimeStamp() = default;
  PWDateTimeStamp(std::uint16_t year, std::uint8_t month, std::uint8_t day, std::uint8_t hour,
                  std::uint8_t minute, std::uint8_t second)
      : year(year), month(month), day(day), hour(hour), minute(minute), second(second) {}

  // Each field cut to its width.
  PWDateTimeStamp& operator=(const pw::CivilTime& time);

  // The present time of the machine's zone. A static, valid until the next call.
  static PWDateTimeStamp& CurrentTime();

  friend bool operator==(const PWDateTimeStamp&, const PWDateTimeStamp&) = default;

  std::uint16_t year = 0;  // full
  std::uint8_t month = 0;  // 1 to 12
  std::uint8_t day = 0;    // 1 to 31
  std::uint8_t hour = 0;
  std::uint8_t minute = 0;
  std::uint8_t second = 0;
};

// The engine's record of a date in a zone's rule, and of a zone: the platform's own well-known
// shapes.
struct SYSTEMTIME {
  std::uint16_t wYear = 0;
  std::uint16_t wMonth = 0;
  std::uint16_t wDayOfWeek = 0;
  std::uint16_t wDay = 0;
  std::uint16_t wHour = 0;
  std::uint16_t wMinute = 0;
  std::uint16_t wSecond = 0;
  std::uint16_t wMilliseconds = 0;

  friend bool operator==(const SYSTEMTIME&, const SYSTEMTIME&) = default;
};
struct TIME_ZONE_INFORMATION {
  std::int32_t Bias = 0;  // minutes from local time to UTC
  char16_t StandardName[32] = {};
  SYSTEMTIME StandardDate;
  std::int32_t StandardBias = 0;  // minutes more, while standard time holds
  char16_t DaylightName[32] = {};
  SYSTEMTIME DaylightDate;
  std::int32_t DaylightBias = 0;  // minutes more, while daylight time holds
};

class PWTimeZone : public PWObject {
 public:
  PWTimeZone() = default;
  explicit PWTimeZone(const TIME_ZONE_INFORMATION& zone) : zone(zone) {}

  // Equal in the three biases and all words of the two dates; the names don't count.
  bool operator==(const TIME_ZONE_INFORMATION& other) const;

  void Serialize(PWArchive& archive) override;
  PWRuntimeClass* RuntimeClass() override;
  PWObject* Clone() override { return new PWTimeZone(*this); }

  TIME_ZONE_INFORMATION zone;
};

// A running CRC-32 over texts.
class PWCrc : public PWObject {
 public:
  // Folds the text's bytes and one zero byte, so that "ab", "c" and "a", "bc" differ.
  void Add(const PWString& text);

  std::uint32_t value = 0;
};

// The value of one field of a record, on its way through the field map.
class PWField : public PWObject {
 public:
  static constexpr std::int32_t kText = 2;

  PWField() = default;
  explicit PWField(std::string_view text) { SetText(text); }

  void SetText(std::string_view value) {
    type = kText;
    text = value;
  }
  operator const char*() const { return text; }  // NOLINT(google-explicit-constructor)

  std::int32_t type = 0;
  PWString text;
};
