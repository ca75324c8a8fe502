#include "framework/application.h"

#include "base/process_wide.h"
#include "framework/engine_context.h"

namespace {

pw::ProcessWide<pw::EngineContext> engine;

}  // namespace

pw::EngineContext& pw::Engine() {
  return *engine;
}

PWAppSrcTypeInfo* PWApplicationSource::FindTypeInfo(const char* typeName) const {
  for (std::uint32_t i = 0; i < Types.Count(); ++i) {
    auto* info = static_cast<PWAppSrcTypeInfo*>(Types.At(i));
    if (info->Name == typeName) return info;
  }
  return nullptr;
}

PWWindow* PWApplication::MainWindow() {
  return engine->mainWindow ? &*engine->mainWindow : nullptr;
}

PWApplicationType* PWApplication::FirstType() {
  engine->nextType = 0;
  return NextType();
}

PWApplicationType* PWApplication::NextType() {
  if (engine->nextType >= engine->types.size()) return nullptr;
  return engine->types[engine->nextType++].get();
}

PWRESULT PWApplication::RefreshCategories(PWApplicationSource* source, bool flag) {
  engine->pendingRefreshes.push_back({source, flag});
  return kResultOk;
}
