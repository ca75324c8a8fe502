#pragma once

#include <functional>
#include <vector>

#include "framework/application.h"
#include "framework/config.h"
#include "framework/import_manager.h"
#include "framework/source_manager.h"
#include "host/collected_log.h"
#include "host/unattended_dialogs.h"
#include "platform/clock.h"

namespace pw {

// What the engine's part of a run works with. Nothing here is owned.
struct EngineObjects {
  PWImportManager& importManager;
  PWSourceManager& manager;
  PWConfig& config;
  PWApplicationSource& applicationSource;
  std::vector<LogLine>& log;
  SettableClock& clock;
  UnattendedDialogs& dialogs;

  // Gives the engine a main window that has a parent and a grandparent, or takes it away again.
  std::function<void(bool)> setWindowChain;
};

// The names of the data types that the manager offers, in its order.
std::vector<std::string> TypeNames(PWSourceManager& manager);

// Fills the source's record and the engine's with all types of the manager, none of them taking
// part in a run and none with a category.
void RegisterTypes(EngineObjects& objects);

// Starts a run of the types named, in the order of the manager's types. The categories given for
// each type are paired with themselves.
struct TypeCategories {
  std::string type;
  bool takesPart = false;
  PWSourceCategoryVector categories;
};
void PairTypes(EngineObjects& objects, const std::vector<TypeCategories>& types);

}  // namespace pw
