#include "framework/timezone_record.h"

namespace {

// Texts.
constexpr PWPropertyId kCity{1};
constexpr PWPropertyId kState{2};
constexpr PWPropertyId kCountry{3};

// Numbers.
constexpr PWPropertyId kHome{1};
constexpr PWPropertyId kWorld{2};
constexpr PWPropertyId kActive{3};
constexpr PWPropertyId kBias{4};
constexpr PWPropertyId kStandardBias{5};
constexpr PWPropertyId kDaylightBias{6};
constexpr PWPropertyId kStandardSwitch{7};
constexpr PWPropertyId kDaylightSwitch{8};

std::uint32_t Unsigned(PWRecord& record, PWPropertyId id) {
  return static_cast<std::uint32_t>(record.Number(id));
}

void SetUnsigned(PWRecord& record, PWPropertyId id, std::uint32_t value) {
  record.Number(id) = static_cast<std::int32_t>(value);
}

}  // namespace

PWString& PWTimezoneRecord::City() const {
  return record->Text(kCity);
}

void PWTimezoneRecord::City(const char* text) {
  record->SetText(kCity, text);
}

PWString& PWTimezoneRecord::State() const {
  return record->Text(kState);
}

void PWTimezoneRecord::State(const char* text) {
  record->SetText(kState, text);
}

PWString& PWTimezoneRecord::Country() const {
  return record->Text(kCountry);
}

void PWTimezoneRecord::Country(const char* text) {
  record->SetText(kCountry, text);
}

bool PWTimezoneRecord::Home() const {
  return record->Flag(kHome);
}

void PWTimezoneRecord::Home(bool home) {
  record->SetFlag(kHome, home);
}

bool PWTimezoneRecord::World() const {
  return record->Flag(kWorld);
}

void PWTimezoneRecord::World(bool world) {
  record->SetFlag(kWorld, world);
}

bool PWTimezoneRecord::Active() const {
  return record->Flag(kActive);
}

void PWTimezoneRecord::Active(bool active) {
  record->SetFlag(kActive, active);
}

std::uint32_t PWTimezoneRecord::Bias() const {
  return Unsigned(*record, kBias);
}

void PWTimezoneRecord::Bias(std::uint32_t minutes) {
  SetUnsigned(*record, kBias, minutes);
}

std::uint32_t PWTimezoneRecord::StandardBias() const {
  return Unsigned(*record, kStandardBias);
}

void PWTimezoneRecord::StandardBias(std::uint32_t minutes) {
  SetUnsigned(*record, kStandardBias, minutes);
}

std::uint32_t PWTimezoneRecord::DaylightBias() const {
  return Unsigned(*record, kDaylightBias);
}

void PWTimezoneRecord::DaylightBias(std::uint32_t minutes) {
  SetUnsigned(*record, kDaylightBias, minutes);
}

std::uint32_t PWTimezoneRecord::StandardSwitch() const {
  return Unsigned(*record, kStandardSwitch);
}

void PWTimezoneRecord::StandardSwitch(std::uint32_t date) {
  SetUnsigned(*record, kStandardSwitch, date);
}

std::uint32_t PWTimezoneRecord::DaylightSwitch() const {
  return Unsigned(*record, kDaylightSwitch);
}

void PWTimezoneRecord::DaylightSwitch(std::uint32_t date) {
  SetUnsigned(*record, kDaylightSwitch, date);
}
