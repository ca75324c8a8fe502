#pragma once

#include <cstdint>
#include <optional>
#include <string_view>

// The rule line at the end of a compiled zone file, such as "EST5EDT,M3.2.0,M11.1.0": what holds
// once all the changes that the file lists are past. Offsets are seconds to add to UTC.
namespace pw {

// When clocks change, in any year.
struct RuleDay {
  enum class Kind {
    kWeekday,         // `weekday` of the `week` of `month`
    kDayButLeapDay,   // the day of the year, from 1, where the 29th of February isn't counted
    kDayWithLeapDay,  // the day of the year, from 0
  };
  Kind kind = Kind::kWeekday;
  std::int32_t month = 1;    // from 1
  std::int32_t week = 1;     // from 1; 5 is the last
  std::int32_t weekday = 0;  // 0 for Sunday
  std::int32_t day = 0;

  // Seconds from that day's midnight, on the clocks before the change: up to a week either way.
  std::int32_t time = 7200;

  friend bool operator==(const RuleDay&, const RuleDay&) = default;
};

struct RuleLine {
  // What follows a second name. Its clocks may also be behind standard time.
  struct Daylight {
    std::int32_t offset = 0;
    RuleDay start;
    RuleDay end;

    friend bool operator==(const Daylight&, const Daylight&) = default;
  };

  std::int32_t standard = 0;
  std::optional<Daylight> daylight;

  friend bool operator==(const RuleLine&, const RuleLine&) = default;
};

// Nothing for a text that isn't such a line, or that names daylight time without saying when.
std::optional<RuleLine> ParseRuleLine(std::string_view line);

// When daylight time begins and ends in a year, in seconds since 1970 UTC.
struct RuleChanges {
  std::int64_t start = 0;
  std::int64_t end = 0;
};
RuleChanges ChangesOfYear(const RuleLine::Daylight& daylight, std::int32_t standard,
                          std::int32_t year);

// The offset at a moment.
std::int32_t OffsetAt(const RuleLine& rule, std::int32_t utc);

}  // namespace pw
