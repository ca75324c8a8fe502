#pragma once

#include <cstdint>
#include <memory>
#include <string>

#include "calltask/call_record.h"
#include "calltask/day_store.h"

// The organiser's calls, "CALL.WMW".
class WMCallStore : public pw::DayStore {
 public:
  WMCallStore();

  static std::string PathOf(const std::string& prefix);

  // Makes an empty file. 0, or -1 if it can't be made.
  static std::int32_t CreateCallStore(const std::string& prefix);

  // Files the call under the local date of its start. 0, or `kDayFull`: the call is then freed.
  std::int32_t Add(std::unique_ptr<WMCallRec> call);

 private:
  std::unique_ptr<pw::RecordDay> NewDay(std::uint16_t key) const override;
};
