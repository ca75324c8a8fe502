#pragma once

#include <array>
#include <cstdint>
#include <string>
#include <string_view>

#include "base/cursor.h"

// One of the organiser's eight clocks, as its file has it.
struct WMClock {
  static constexpr std::size_t kCityTextSize = 26;
  static constexpr std::size_t kCountrySize = 36;
  static constexpr std::size_t kLabelSize = 66;
  static constexpr std::size_t kUnknownSize = 16;

  std::array<char, kCityTextSize> cityText{};
  std::array<char, kCountrySize> country{};
  std::array<char, kLabelSize> label{};
  std::int32_t inactive = 0;
  std::int32_t notHome = 0;
  std::array<char, kUnknownSize> unknown{};

  // The texts up to their first zero, or to the end of the field.
  std::string_view CityText() const;
  std::string_view Country() const;
  std::string_view Label() const;

  // What a save writes: the texts are cut to 25, 35 and 66 bytes. City and country have zeros up to
  // there, and the last byte of their field is left as it was; a label ends with one zero where
  // there is room for it, and what stood behind it stays.
  void SetCityText(std::string_view text);
  void SetCountry(std::string_view text);
  void SetLabel(std::string_view text);
};

// The bytes of the clock file, "CLOCKS.DAT": eight clocks without a header. All numbers are
// little-endian; texts are single bytes.
namespace pw::clocks {

inline constexpr std::size_t kClocks = 8;

// Clock.
//
//   offset  width  field      meaning
//   0       26     cityText   the city, ", " and the state; a further comma and text may follow
//   26      36     country    text
//   62      66     label      text
//   128     4      inactive   0 for the active clock
//   132     4      notHome    0 for the home clock
//   136     16     unknown    carried
inline constexpr std::size_t kClockSize = WMClock::kCityTextSize + WMClock::kCountrySize +
                                          WMClock::kLabelSize + 4 + 4 + WMClock::kUnknownSize;
inline constexpr std::size_t kFileSize = kClocks * kClockSize;
WMClock DecodeClock(ByteReader& in);
void EncodeClock(ByteWriter& out, const WMClock& clock);

}  // namespace pw::clocks
