#pragma once

#include <cstdint>

#include "framework/object.h"

// The picture of a log line.
enum ELogItemImage : std::int32_t {
  kLogFailure = 1,
  kLogWarning = 9,
};

// The log of a run, as the person reads it afterwards. Where the lines go is up to who derives it.
class PWLog : public PWObject {
 public:
  // Takes one line, which is copied.
  virtual void Add(const char* text, ELogItemImage image) = 0;

  // Formats a line of any length as `printf` does, and adds it.
  [[gnu::format(printf, 2, 4)]] void Addf(const char* format, ELogItemImage image, ...);
};
