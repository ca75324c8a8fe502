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

template <std::size_t kSize>
void TakeBytes(pw::ByteReader& in, std::array<char, kSize>& field) {
  const std::string_view bytes = in.Take(kSize);
  std::copy(bytes.begin(), bytes.end(), field.begin());
}

template <std::size_t kSize>
void PutBytes(pw::ByteWriter& out, const std::array<char, kSize>& field) {
  out.Bytes({field.data(), kSize});
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
  TakeBytes(in, clock.cityText);
  TakeBytes(in, clock.country);
  TakeBytes(in, clock.label);
  clock.inactive = in.I32();
  clock.notHome = in.I32();
  TakeBytes(in, clock.unknown);
  return clock;
}

void EncodeClock(ByteWriter& out, const WMClock& clock) {
  PutBytes(out, clock.cityText);
  PutBytes(out, clock.country);
  PutBytes(out, clock.label);
  out.I32(clock.inactive);
  out.I32(clock.notHome);
  PutBytes(out, clock.unknown);
}

}  // namespace pw::clocks
