#include "timeplace/clock_format.h"

#include <algorithm>

#include "base/text.h"

namespace {

template <std::size_t kSize>
std::string_view TextOf(const std::array<char, kSize>& field) {
  return pw::UpToZero({field.data(), kSize});
}

// What of a text has room before a field's last byte.
template <std::size_t kSize>
std::string_view Fitting(const std::array<char, kSize>& /*field*/, std::string_view text) {
  return pw::UpToZero(text).substr(0, kSize - 1);
}

template <std::size_t kSize>
void SetFilledText(std::array<char, kSize>& field, std::string_view text) {
  text = Fitting(field, text);
  const auto end = std::copy(text.begin(), text.end(), field.begin());
  std::fill(end, field.end() - 1, '\0');
}

}  // namespace

std::string_view WMClock::CityText() const {
  return TextOf(cityText);
}

std::string_view WMClock::Country() const {
  return TextOf(country);
}

std::string_view WMClock::Label() const {
  return TextOf(label);
}

void WMClock::SetCityText(std::string_view text) {
  SetFilledText(cityText, text);
}

void WMClock::SetCountry(std::string_view text) {
  SetFilledText(country, text);
}

void WMClock::SetLabel(std::string_view text) {
  text = pw::UpToZero(text).substr(0, label.size());
  const auto end = std::copy(text.begin(), text.end(), label.begin());
  if (end != label.end()) *end = '\0';
}

namespace pw::clocks {

WMClock DecodeClock(ByteReader& in) {
  WMClock clock;
  in.TakeInto(clock.cityText);
  in.TakeInto(clock.country);
  in.TakeInto(clock.label);
  clock.inactive = in.I32();
  clock.notHome = in.I32();
  in.TakeInto(clock.unknown);
  return clock;
}

void EncodeClock(ByteWriter& out, const WMClock& clock) {
  out.Bytes(clock.cityText);
  out.Bytes(clock.country);
  out.Bytes(clock.label);
  out.I32(clock.inactive);
  out.I32(clock.notHome);
  out.Bytes(clock.unknown);
}

}  // namespace pw::clocks
