#pragma once

#include <string>
#include <vector>

#include "host/engine_run.h"

namespace pw {

// What the module doesn't say of a task file and the call file beside it.
struct TodoFiles {
  std::vector<std::string> problems;  // what can't be read, and so is left out; a line each

  // Whether their records tell when they were changed. Tasks do only where calls do.
  bool tasksTellChange = false;
  bool callsTellChange = false;
};

// `prefix` is the location of their category.
TodoFiles LookAtTodoFiles(EngineRun& run, const std::string& prefix);

}  // namespace pw
