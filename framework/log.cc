#include "framework/log.h"

#include <cstdarg>

#include "base/text.h"

void PWLog::Addf(const char* format, ELogItemImage image, ...) {
  va_list arguments;
  va_start(arguments, image);
  const std::string line = pw::FormatList(format, arguments);
  va_end(arguments);
  Add(line.c_str(), image);
}
