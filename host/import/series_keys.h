#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

#include "framework/source.h"
#include "host/import/incoming.h"
#include "platform/clock.h"

namespace pw {

// The first second from `now` on that is the beginning of `count` keys in a row which nobody has.
std::int64_t FirstFreeKey(std::vector<std::int64_t> taken, std::int64_t now, std::size_t count);

// Has new series take keys that no series of the calendar has. The module gives a series the
// present time as its key, or one more than it gave before: it only knows of those that it gave
// itself, so that a run which adds many reaches into the time of the next. Where that is so the
// clock stands still at the first free key for as long as this lives.
class SeriesKeys {
 public:
  // Walks the calendar's records. The clock must outlive this.
  SeriesKeys(PWSource& calendar, std::vector<IncomingRecord>& records, SettableClock& clock);
  ~SeriesKeys();
  SeriesKeys(const SeriesKeys&) = delete;
  SeriesKeys& operator=(const SeriesKeys&) = delete;

 private:
  SettableClock* fixed = nullptr;
};

}  // namespace pw
