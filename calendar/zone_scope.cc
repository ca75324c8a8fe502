#include "calendar/zone_scope.h"

#include "timeplace/zones.h"

namespace pw::calendar {
namespace {

// The home city's zone may have other cities before it, with clocks of their own.
void SwitchTo(std::int32_t zone) {
  if (zone == WorkingZoneId()) return;
  SwitchZone(zone == HomeZoneId() ? 0 : zone, false);
}

}  // namespace

ZoneScope::ZoneScope(std::int32_t zone) : before(WorkingZoneId()) {
  if (zone == before) return;
  SwitchTo(HomeZoneId());
  SwitchTo(zone);
}

ZoneScope::~ZoneScope() {
  SwitchTo(before);
}

}  // namespace pw::calendar
