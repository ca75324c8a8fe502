#pragma once

#include <cstdint>

namespace pw::calendar {

// Makes a zone the working zone, and the one of before again at its end. A zone without a city, 0
// among them, is the home zone.
class ZoneScope {
 public:
  explicit ZoneScope(std::int32_t zone);
  ~ZoneScope();
  ZoneScope(const ZoneScope&) = delete;
  ZoneScope& operator=(const ZoneScope&) = delete;

 private:
  std::int32_t before;
};

}  // namespace pw::calendar
