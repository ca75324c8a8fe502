#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "framework/category.h"
#include "host/engine_run.h"
#include "host/outcome.h"

namespace pw {

// That nothing is written to files that have this.
Failure NothingWritten(const std::string& damage);

// Why nothing is written to a cardfile or a binder: something in its files isn't as it should be,
// so that a save could lose some of it. Nothing where all is well, and for a type whose files tell
// of it when they are opened.
std::optional<Failure> WhyDamaged(const EngineRun& run, std::string_view type,
                                  const PWSourceCategory& category);

}  // namespace pw
