#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "calltask/block_reader.h"
#include "calltask/day_record.h"
#include "calltask/frame_format.h"
#include "framework/object.h"

namespace pw {

using DayRecords = std::vector<std::unique_ptr<DayRecord>>;

// One day's records, which the store owns.
class RecordDay : public PWObject {
 public:
  explicit RecordDay(std::uint16_t key) : key(key) {}
  ~RecordDay() override;
  RecordDay(const RecordDay&) = delete;
  RecordDay& operator=(const RecordDay&) = delete;

  bool IsFull() const { return records.size() >= calltask::kSlots; }

  // Adds at the end. The day must not be full.
  void Add(DayRecord& record);

  // A record that isn't here changes nothing.
  void Remove(DayRecord& record);

  // The records of a block, to be added; nothing if one of them can't be read.
  std::optional<DayRecords> Read(std::string_view block, calltask::FormatVersion version,
                                 calltask::BlockReader& reader) const;

  // The block; empty for a day without records.
  std::string Encode(calltask::FormatVersion version) const;

 private:
  virtual std::unique_ptr<DayRecord> NewRecord() const = 0;

  std::uint16_t key;
  std::vector<DayRecord*> records;
};

}  // namespace pw

class WMCallDay : public pw::RecordDay {
 public:
  using RecordDay::RecordDay;

 private:
  std::unique_ptr<pw::DayRecord> NewRecord() const override;
};

class CWMTaskDay : public pw::RecordDay {
 public:
  using RecordDay::RecordDay;

 private:
  std::unique_ptr<pw::DayRecord> NewRecord() const override;
};
