#pragma once

#include <cstdint>

#include "framework/record.h"

// A memo. It owns nothing: the wrapped record must not be null and must outlive it. Texts are read
// as live references into that record, valid until it is assigned or destroyed. They are set from a
// text up to its zero byte, and `size` bytes at most; `PWRecord::kWholeText` takes it whole, and
// null is the empty text.
class PWMemoRecord {
 public:
  explicit PWMemoRecord(PWRecord* record) : record(record) {}
  virtual ~PWMemoRecord() = default;

  PWString& Subject() const;
  void Subject(const char* text, std::uint32_t size);

  PWString& Body() const;
  void Body(const char* text, std::uint32_t size);

 private:
  PWRecord* record;
};
