#include "host/import/series_keys.h"

#include <algorithm>
#include <string_view>

#include "base/text.h"
#include "framework/event_record.h"

namespace pw {
namespace {

constexpr std::string_view kSeriesId = "Recurring:";

std::vector<std::int64_t> KeysOf(PWSource& calendar) {
  std::vector<std::int64_t> keys;
  for (PWRESULT at = calendar.FirstRecord(); at == kResultOk; at = calendar.NextRecord()) {
    const std::string_view id = calendar.RecordID().View();
    if (id.substr(0, kSeriesId.size()) == kSeriesId) {
      keys.push_back(ParseLong(id.substr(kSeriesId.size())));
    }
  }
  return keys;
}

}  // namespace

std::int64_t FirstFreeKey(std::vector<std::int64_t> taken, std::int64_t now, std::size_t count) {
  std::sort(taken.begin(), taken.end());
  std::int64_t first = now;
  for (const std::int64_t key : taken) {
    const bool isAmong = key >= first && key < first + static_cast<std::int64_t>(count);
    if (isAmong) first = key + 1;
  }
  return first;
}

SeriesKeys::SeriesKeys(PWSource& calendar, std::vector<IncomingRecord>& records,
                       SettableClock& clock) {
  const auto count = std::count_if(records.begin(), records.end(), [](IncomingRecord& each) {
    return PWEventRecord(&each.record).Recurring();
  });
  if (count == 0) return;
  const std::int64_t now = clock.Now();
  const std::int64_t first = FirstFreeKey(KeysOf(calendar), now, static_cast<std::size_t>(count));
  if (first == now) return;
  clock.FixNow(first);
  fixed = &clock;
}

SeriesKeys::~SeriesKeys() {
  if (fixed != nullptr) fixed->RunOn();
}

}  // namespace pw
