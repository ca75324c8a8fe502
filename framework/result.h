#pragma once

#include <cstdint>

// Result of an operation across the border. Whoever calls takes anything but 0 as a failure.
enum PWRESULT : std::int32_t {
  kResultOk = 0,
  kResultFailed = 1,          // or no such record, or no more of them
  kResultNotImplemented = 2,  // the reserved operations
  kResultFileMissing = 7,     // the source's data file isn't there
  kResultCategoryMade = 11,   // a category had no file, so one was made: list the categories again
};
