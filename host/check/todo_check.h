#pragma once

#include <string_view>

#include "host/check/finding.h"

namespace pw {

// A look at a task or a call file, which the host also takes before it reads one.
struct TodoFileCheck : FileCheck {
  bool isVersion50 = false;
};

TodoFileCheck CheckTasks(std::string_view bytes);
TodoFileCheck CheckCalls(std::string_view bytes);

}  // namespace pw
