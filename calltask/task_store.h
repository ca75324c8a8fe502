#pragma once

#include <cstdint>
#include <memory>
#include <string>

#include "calltask/day_store.h"
#include "calltask/task_record.h"

// The organiser's tasks, "TASK.WMW".
class WMTaskStore : public pw::DayStore {
 public:
  WMTaskStore();

  static std::string PathOf(const std::string& prefix);

  // Makes an empty file. 0, or -1 if it can't be made.
  static std::int32_t CreateTaskStore(const std::string& prefix);

  // Files the task under the start date of its word B, or with `keepDay` under the day that it was
  // filed under before, if there was one. 0, or `kDayFull`: the task is then freed.
  std::int32_t Add(std::unique_ptr<CTaskRecord> task, bool keepDay);

 private:
  std::unique_ptr<pw::RecordDay> NewDay(std::uint16_t key) const override;
};
