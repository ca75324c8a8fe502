#pragma once

#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "host/console.h"
#include "host/engine_run.h"
#include "host/outcome.h"
#include "host/record_reader.h"

namespace pw {

// The records that a person asked for.
struct ChosenRecords {
  std::vector<CategoryRecords> categories;
  bool anyLeftOut = false;  // a record or a whole file could not be read, which was told
};

// Reads the records of one category, or of all without a word. Where several are read, one that
// can't be is told and left out; where it is the only one, that is a failure.
Outcome<ChosenRecords> ChooseRecords(EngineRun& run, const Console& console,
                                     const std::string& type,
                                     const std::optional<std::string>& category);

}  // namespace pw
