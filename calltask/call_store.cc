#include "calltask/call_store.h"

#include <utility>

namespace {

pw::ProcessWide<std::optional<pw::calltask::FormatVersion>> callFormat;

const pw::StoreKind kCalls = {"CALL.WMW", pw::calltask::kCallMagics, false, callFormat};

}  // namespace

WMCallStore::WMCallStore() : DayStore(kCalls) {}

std::string WMCallStore::PathOf(const std::string& prefix) {
  return prefix + kCalls.fileName;
}

std::int32_t WMCallStore::CreateCallStore(const std::string& prefix) {
  return pw::CreateStoreFile(kCalls, prefix);
}

std::int32_t WMCallStore::Add(std::unique_ptr<WMCallRec> call) {
  const std::uint16_t key = call->FilingKey();
  return AddToDay(std::move(call), key);
}

std::unique_ptr<pw::RecordDay> WMCallStore::NewDay(std::uint16_t key) const {
  return std::make_unique<WMCallDay>(key);
}
