#include "plugin/source_manager.h"

#include <array>
#include <new>

#include "calendar/mapping/calendar_source.h"
#include "calltask/todo_source.h"
#include "cardfile/contact_source.h"
#include "framework/registry.h"
#include "memo/memo_source.h"
#include "plugin/string_table.h"
#include "timeplace/timezone_source.h"

namespace {

struct DataType {
  const char* name;
  PWSource* (*make)(WMSourceManager* manager);
};

// In the order in which the engine gets to know them.
constexpr std::array<DataType, 5> kDataTypes = {{
    {"contact",
     [](WMSourceManager* manager) -> PWSource* {
       return new (std::nothrow) WMContactSource(manager);
     }},
    {"calendar",
     [](WMSourceManager* manager) -> PWSource* {
       return new (std::nothrow) WMCalendarSource(manager);
     }},
    {"todo",
     [](WMSourceManager* manager) -> PWSource* {
       return new (std::nothrow) WMTodoSource(manager);
     }},
    {"memo",
     [](WMSourceManager* manager) -> PWSource* {
       return new (std::nothrow) WMMemoSource(manager);
     }},
    {"timezone",
     [](WMSourceManager* manager) -> PWSource* {
       return new (std::nothrow) WMTimezoneSource(manager);
     }},
}};

// The calendar and the task list have one category each, and share its file stem.
bool HasOneSharedCategory(const char* typeName) {
  const PWString type(typeName);
  return type == "calendar" || type == "todo";
}

}  // namespace

WMSourceManager::~WMSourceManager() = default;

PWSource* WMSourceManager::CreateSource(const char* typeName) {
  const PWString wanted(typeName);
  for (const DataType& type : kDataTypes) {
    if (wanted == type.name) return type.make(this);
  }
  return nullptr;
}

void WMSourceManager::GetTypes(PWStringVector& out) {
  for (const DataType& type : kDataTypes) out.AppendText(type.name);
}

PWRESULT WMSourceManager::ClearSyncCategoryNames() {
  PWRegistry registry;
  PWString names;
  registry.Open(LoadString(strings::kMainKeyDesktop), false);
  registry.Read("SyncCatNames", names);
  registry.Write("SyncCatNames", "");
  registry.Close();
  return kResultOk;
}

std::int32_t WMSourceManager::CategoryLimit(const char* typeName) {
  return HasOneSharedCategory(typeName) ? 1 : -1;
}

bool WMSourceManager::IsSharedCategory(const char* typeName) {
  return HasOneSharedCategory(typeName);
}

PWString WMSourceManager::CategoryHeaderName() {
  return LoadString(strings::kFile);
}
