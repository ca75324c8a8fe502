#pragma once

#include <cstdint>

#include "framework/record.h"

// A clock of the organiser: a city, and its zone. It owns nothing: the wrapped record must not be
// null and must outlive it. Texts are read as live references into that record, valid until it is
// assigned or destroyed; null sets an empty text.
class PWTimezoneRecord {
 public:
  explicit PWTimezoneRecord(PWRecord* record) : record(record) {}
  virtual ~PWTimezoneRecord() = default;

  PWString& City() const;
  void City(const char* text);
  PWString& State() const;
  void State(const char* text);
  PWString& Country() const;
  void Country(const char* text);

  // The home clock, a world clock, the clock in use. That there is one of a kind is for the source
  // to see to.
  bool Home() const;
  void Home(bool home);
  bool World() const;
  void World(bool world);
  bool Active() const;
  void Active(bool active);

  // Minutes by which the city's time is ahead of UTC; west of Greenwich a negative number in two's
  // complement.
  std::uint32_t Bias() const;
  void Bias(std::uint32_t minutes);

  // Minutes more, while standard and while daylight time holds.
  std::uint32_t StandardBias() const;
  void StandardBias(std::uint32_t minutes);
  std::uint32_t DaylightBias() const;
  void DaylightBias(std::uint32_t minutes);

  // When standard and daylight time begin, in four bytes from the highest down: the month from 1;
  // the week of the month from 1, or 0 for a fixed date; the weekday from 1, or the day of a fixed
  // date; the hour. 0 where there is no daylight time.
  std::uint32_t StandardSwitch() const;
  void StandardSwitch(std::uint32_t date);
  std::uint32_t DaylightSwitch() const;
  void DaylightSwitch(std::uint32_t date);

 private:
  PWRecord* record;
};
