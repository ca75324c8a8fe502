#pragma once

#include <cstdint>
#include <optional>

// The machine's time. All operations are called on the engine's one thread.
namespace pw {

// A date and time of the Gregorian calendar, without a zone.
struct CivilTime {
  std::int32_t year = 0;   // full
  std::int32_t month = 0;  // 1 to 12
  std::int32_t day = 0;    // 1 to 31
  std::int32_t hour = 0;
  std::int32_t minute = 0;
  std::int32_t second = 0;
  std::int32_t weekday = 0;  // 0 for Sunday

  friend bool operator==(const CivilTime&, const CivilTime&) = default;
};

class Clock {
 public:
  virtual ~Clock() = default;

  // Seconds since 1970-01-01 00:00:00 UTC.
  virtual std::int64_t Now() = 0;

  // Milliseconds from a start of the machine's choosing, modulo 2^32.
  virtual std::uint32_t Ticks() = 0;

  // A moment in UTC, and in the machine's own zone with its daylight rules. Both take any moment of
  // the years 1 to 9999; outside of these the nearest such moment is given.
  virtual CivilTime Utc(std::int64_t seconds) = 0;
  virtual CivilTime Local(std::int64_t seconds) = 0;
};

// Passes everything on, so that a test overrides only what is to differ.
class ClockWrapper : public Clock {
 public:
  explicit ClockWrapper(Clock& target) : target(target) {}

  std::int64_t Now() override { return target.Now(); }
  std::uint32_t Ticks() override { return target.Ticks(); }
  CivilTime Utc(std::int64_t seconds) override { return target.Utc(seconds); }
  CivilTime Local(std::int64_t seconds) override { return target.Local(seconds); }

 private:
  Clock& target;
};

// A clock whose time and ticks can be made to stand still, for runs that must give the same result
// whenever they are made; `RunOn` has it tell the time again.
class SettableClock : public ClockWrapper {
 public:
  using ClockWrapper::ClockWrapper;

  void FixNow(std::int64_t seconds) { now = seconds; }
  void RunOn() { now.reset(); }
  void FixTicks(std::uint32_t value) { ticks = value; }

  std::int64_t Now() override { return now ? *now : ClockWrapper::Now(); }
  std::uint32_t Ticks() override { return ticks ? *ticks : ClockWrapper::Ticks(); }

 private:
  std::optional<std::int64_t> now;
  std::optional<std::uint32_t> ticks;
};

}  // namespace pw
