#pragma once

#include <cstdint>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "framework/application.h"
#include "framework/field_map.h"

namespace pw {

struct PendingRefresh {
  PWApplicationSource* source;  // not owned
  bool flag;
};

// What the engine holds for the whole process. Whoever plays its part fills it; the module reaches
// it only through `PWApplication` and the operations of `PWSource`.
struct EngineContext {
  std::vector<std::unique_ptr<PWApplicationType>> types;
  std::size_t nextType = SIZE_MAX;  // of the walk by FirstType and NextType; none is going on yet
  std::optional<PWWindow> mainWindow;
  std::vector<PendingRefresh> pendingRefreshes;

  // The field maps that were chosen, by data type and category location.
  std::map<std::pair<std::string, std::string>, PWFieldMap> fieldMaps;
};

EngineContext& Engine();

}  // namespace pw
