#include <cstdint>
#include <string>

#include "calendar/calendar_store.h"
#include "calltask/call_store.h"
#include "calltask/task_store.h"
#include "cardfile/card_file.h"
#include "framework/application.h"
#include "memo/memo_sections.h"
#include "platform/platform.h"
#include "plugin/handshake.h"
#include "plugin/source_manager.h"
#include "plugin/string_table.h"

// Everything of the types that take part in a run, emptied before it is written anew from the other
// side.
namespace {

// False where the organiser is busy; then nothing was done.
using EmptyCategory = bool (*)(const std::string& location);

bool Exists(const std::string& path) {
  return pw::CurrentPlatform().files->Exists(path);
}

// Fields and settings of the file stay. The organiser isn't told of the end where the file can't be
// read.
bool EmptyCardfile(const std::string& location) {
  if (!Exists(location)) return true;
  if (!AskOrganiser(location, kContactFiles)) return false;
  WMCardFile file;
  if (file.Load(location) != 0) return true;
  for (std::uint32_t left = file.CardCount(); left > 0; --left) file.DeleteCard(0);
  file.Save();
  NotifyOrganiserEnd(false, 0, false);
  return true;
}

bool EmptyCalendar(const std::string& location) {
  const std::string path = location + LoadString(strings::kEventFile).Str();
  if (!Exists(path)) return true;
  if (!AskOrganiser(path, kCalendarFiles)) return false;
  NotifyOrganiserEnd(ResetFiles(location), 0, false);
  return true;
}

// The organiser is asked by the location itself, without a file's name, and told of a change where
// the calls could not be made anew.
bool EmptyTaskList(const std::string& location) {
  if (!AskOrganiser(location, kTodoFiles)) return false;
  pw::Files& files = *pw::CurrentPlatform().files;
  files.Delete(WMTaskStore::PathOf(location));
  files.Delete(WMCallStore::PathOf(location));
  WMTaskStore::CreateTaskStore(location);
  const bool failed = WMCallStore::CreateCallStore(location) != 0;
  NotifyOrganiserEnd(failed, 0, false);
  return true;
}

bool EmptyMemoSection(const std::string& location) {
  return ClearMemoSection(location) == 0;
}

// Null for a type of which nothing is emptied.
EmptyCategory EmptierOf(const PWString& type) {
  if (type == "contact") return EmptyCardfile;
  if (type == "calendar") return EmptyCalendar;
  if (type == "todo") return EmptyTaskList;
  return type == "memo" ? EmptyMemoSection : nullptr;
}

// False where the organiser is busy.
bool EmptyPaired(const PWSourceCategoryVector& engines, const PWAppSrcTypeInfo& info,
                 EmptyCategory empty) {
  for (std::uint32_t i = 0; i < engines.Count(); ++i) {
    const std::uint32_t id = engines.At(i)->AppID;
    const PWSourceCategory* category = info.Categories.FindByAppID(id);
    if (category == nullptr || id == 0 || category->Location.IsEmpty()) continue;
    if (empty != nullptr && !empty(category->Location.Str())) return false;
  }
  return true;
}

}  // namespace

// A type that the source doesn't know, or without a category, ends it all.
PWRESULT WMSourceManager::DeleteAllData() {
  for (PWApplicationType* type = PWApplication::FirstType(); type != nullptr;
       type = PWApplication::NextType()) {
    if (!type->IsSyncing()) continue;
    const PWAppSrcTypeInfo* info =
        ApplicationSource == nullptr ? nullptr : ApplicationSource->FindTypeInfo(type->Name());
    if (info == nullptr || type->CategoryVector().Count() == 0) return kResultOk;
    if (EmptyPaired(type->CategoryVector(), *info, EmptierOf(type->Name()))) continue;
    LogOrganiserBusy(*this);
    return kResultFailed;
  }
  return kResultOk;
}
