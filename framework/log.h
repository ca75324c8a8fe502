#pragma once

#include <cstdint>

#include "base/text.h"
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

  // Formats a line of any length as `printf` does, and adds it. The values are numbers and
  // `const char*`.
  template <class... Values>
  void Addf(const char* format, ELogItemImage image, Values... values) {
    Add(pw::Format(format, values...).c_str(), image);
  }
};
