#include "calltask/record_day.h"

#include <algorithm>

#include "calltask/call_record.h"
#include "calltask/task_record.h"

namespace pw {

// What is left of its records lives on in the store's list.
RecordDay::~RecordDay() {
  for (DayRecord* record : records) record->day = nullptr;
}

void RecordDay::Add(DayRecord& record) {
  records.push_back(&record);
  record.day = this;
  record.key = key;
}

void RecordDay::Remove(DayRecord& record) {
  const auto found = std::find(records.begin(), records.end(), &record);
  if (found == records.end()) return;
  records.erase(found);
  record.day = nullptr;
}

std::optional<DayRecords> RecordDay::Read(std::string_view block, calltask::FormatVersion version,
                                          calltask::BlockReader& reader) const {
  DayRecords read;
  const bool isRead = reader.Read(block, [&](std::string_view& rest) {
    read.push_back(NewRecord());
    return read.back()->Take(rest, version);
  });
  if (!isRead) return std::nullopt;
  return read;
}

std::string RecordDay::Encode(calltask::FormatVersion version) const {
  if (records.empty()) return {};
  std::vector<const DayRecord*> sorted(records.begin(), records.end());
  std::stable_sort(sorted.begin(), sorted.end(),
                   [](const DayRecord* a, const DayRecord* b) { return a->Rank() < b->Rank(); });
  ByteWriter out;
  for (const DayRecord* record : sorted) record->Encode(out, version);
  out.Bytes(std::string(calltask::kSlots - records.size(), calltask::kEmptySlot));
  return out.Release();
}

}  // namespace pw

std::unique_ptr<pw::DayRecord> WMCallDay::NewRecord() const {
  return std::make_unique<WMCallRec>();
}

std::unique_ptr<pw::DayRecord> CWMTaskDay::NewRecord() const {
  return std::make_unique<CTaskRecord>();
}
