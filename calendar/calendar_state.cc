#include "calendar/calendar_state.h"

#include "base/process_wide.h"
#include "platform/platform.h"
#include "plugin/discovery.h"
#include "timeplace/zones.h"

namespace {

constexpr std::int32_t kNewVersion = 50;
constexpr std::int32_t kOldVersion = 40;

pw::ProcessWide<std::int32_t> organiserVersion;
pw::ProcessWide<std::uint16_t> itemCount;
pw::ProcessWide<std::uint16_t> dataRecordCount;
pw::ProcessWide<std::int32_t> lastSeriesKey;
pw::ProcessWide<bool> notesShortened;

std::uint32_t IdOfCount(std::uint16_t& count) {
  const std::uint32_t ticks = pw::CurrentPlatform().clock->Ticks() & 0xFFFF;
  return std::uint32_t{count++} << 16 | ticks;
}

}  // namespace

std::int32_t& OrganiserVersion() {
  return *organiserVersion;
}

void ChooseOrganiserVersion() {
  *organiserVersion = IsVersion50() ? kNewVersion : kOldVersion;
}

std::uint32_t NewItemId() {
  return IdOfCount(*itemCount);
}

ItemIdPair NewItemIdPair() {
  return {UtcNowSeconds(), IdOfCount(*dataRecordCount)};
}

std::int32_t& LastSeriesKey() {
  return *lastSeriesKey;
}

bool& NotesShortened() {
  return *notesShortened;
}
