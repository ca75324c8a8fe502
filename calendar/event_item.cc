#include "calendar/event_item.h"

#include "calendar/calendar_state.h"
#include "timeplace/zones.h"

namespace {

constexpr std::uint32_t kKeptBySensitivity = 0x00111111;
constexpr std::uint32_t kSensitivityShift = 24;
constexpr std::int32_t kPrivate = 2;

std::int32_t SetUnlessZero(std::int32_t& field, std::int32_t value) {
  if (value == 0) return -1;
  field = value;
  return 0;
}

}  // namespace

WMEventItem::WMEventItem() {
  header.created = UtcNowSeconds();
  header.modified = header.created;
  header.id = static_cast<std::int32_t>(NewItemId());
  header.zone = static_cast<std::uint32_t>(HomeZoneId());
}

bool WMEventItem::IsChanged() const {
  return (header.flags & pw::events::kChangedOccurrence) != 0;
}

std::int32_t WMEventItem::Sensitivity() const {
  return static_cast<std::int32_t>(header.flags >> kSensitivityShift);
}

std::int32_t WMEventItem::SetSensitivity(std::int32_t value) {
  if (value < 0 || value > kPrivate) return -1;
  header.flags = (header.flags & kKeptBySensitivity) | static_cast<std::uint32_t>(value)
                                                           << kSensitivityShift;
  return 0;
}

void WMEventItem::SetChanged(bool changed) {
  header.flags = changed ? header.flags | pw::events::kChangedOccurrence
                         : header.flags & ~pw::events::kChangedOccurrence;
}

std::int32_t WMEventItem::SetStart(std::int32_t seconds) {
  return SetUnlessZero(header.start, seconds);
}

std::int32_t WMEventItem::SetEnd(std::int32_t seconds) {
  return SetUnlessZero(header.end, seconds);
}

std::int32_t WMEventItem::SetModified(std::int32_t seconds) {
  return SetUnlessZero(header.modified, seconds);
}

std::int32_t WMEventItem::SetCreated(std::int32_t created) {
  return SetUnlessZero(header.created, created);
}

void WMEventItem::SetStartTime(std::int32_t seconds) {
  const WMBrokenTime local = SecondsToLocal(seconds);
  detail.SetStartTime(local.hour, local.min);
}

void WMEventItem::SetEndTime(std::int32_t seconds) {
  const WMBrokenTime local = SecondsToLocal(seconds);
  detail.SetEndTime(local.hour, local.min);
}
