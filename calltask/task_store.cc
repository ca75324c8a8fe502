#include "calltask/task_store.h"

#include <utility>

namespace {

pw::ProcessWide<std::optional<pw::calltask::FormatVersion>> taskFormat;

const pw::StoreKind kTasks = {"TASK.WMW", pw::calltask::kTaskMagics, true, taskFormat};

}  // namespace

WMTaskStore::WMTaskStore() : DayStore(kTasks) {}

std::string WMTaskStore::PathOf(const std::string& prefix) {
  return prefix + kTasks.fileName;
}

std::int32_t WMTaskStore::CreateTaskStore(const std::string& prefix) {
  return pw::CreateStoreFile(kTasks, prefix);
}

std::int32_t WMTaskStore::Add(std::unique_ptr<CTaskRecord> task, bool keepDay) {
  const std::uint16_t key = keepDay && task->key ? *task->key : task->FilingKey();
  return AddToDay(std::move(task), key);
}

std::unique_ptr<pw::RecordDay> WMTaskStore::NewDay(std::uint16_t key) const {
  return std::make_unique<CWMTaskDay>(key);
}
