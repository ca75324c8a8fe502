#include <memory>
#include <string>
#include <string_view>
#include <unordered_set>
#include <vector>

#include "base/text.h"
#include "cardfile/card_file.h"
#include "cardfile/format.h"
#include "framework/application.h"
#include "framework/dialogs.h"
#include "memo/binder.h"
#include "platform/platform.h"
#include "plugin/discovery.h"
#include "plugin/handshake.h"
#include "plugin/source_manager.h"
#include "plugin/string_table.h"

// What the person pairs with a folder of the engine: the categories of each type.
namespace {

constexpr const char* kContactType = "contact";

void AppendCategory(const std::string& name, const std::string& location,
                    PWSourceCategoryVector& out) {
  auto category = std::make_unique<PWSourceCategory>();
  category->Name = name;
  category->Location = location;
  out.Append(category.release(), false);
}

// The names of a folder's files with that extension.
std::vector<std::string> FilesIn(const std::string& folder, std::string_view extension) {
  std::vector<std::string> names;
  const std::string pattern = folder + "\\*" + std::string(extension);
  for (const pw::FoundFile& file : pw::CurrentPlatform().files->Find(pattern)) {
    names.push_back(file.name);
  }
  return names;
}

std::string WithoutExtension(const std::string& name, std::string_view extension) {
  return name.substr(0, name.size() - extension.size());
}

std::string PathOf(const std::string& folder, const std::string& name) {
  std::string path = folder;
  return path.append("\\").append(name);
}

PWRESULT ListCardfiles(const std::string& folder, PWSourceCategoryVector& out) {
  for (const std::string& file : FilesIn(folder, pw::cardfile::kExtension)) {
    AppendCategory(WithoutExtension(file, pw::cardfile::kExtension), PathOf(folder, file), out);
  }
  return kResultOk;
}

// A run's log is told of it; without a run the person is.
void ReportBusyBinder(WMSourceManager& manager) {
  if (manager.Log != nullptr) {
    LogOrganiserBusy(manager);
    return;
  }
  pw::CurrentPlatform().dialogs->ShowMessage(
      MainWindowId(), LoadString(strings::kWarning).Str(),
      FormatString(strings::kOrganiserCannotConnect, manager.Name()), pw::kBoxWarning);
}

// One that can't be opened has no sections.
void ListSections(WMSourceManager& manager, const std::string& folder, const std::string& stem,
                  PWSourceCategoryVector& out) {
  const std::string path = PathOf(folder, stem);
  if (!AskOrganiser(path + pw::memo::kSectionFile, kMemoFiles)) {
    ReportBusyBinder(manager);
    return;
  }
  WMBinder binder;
  if (binder.Open(path) == 0) {
    for (const pw::memo::Section& section : binder.Sections()) {
      std::string name = section.name;
      if (name != stem) name.append(" - ").append(stem);
      AppendCategory(name, path + ";" + section.name, out);
    }
  }
  binder.Close();
  NotifyOrganiserEnd(true, 0, false);
}

PWRESULT ListBinders(WMSourceManager& manager, PWSourceCategoryVector& out) {
  const std::string folder = manager.Config->String(PWConfig::kDataFolder).Str();
  for (const std::string& file : FilesIn(folder, pw::memo::kSectionFile)) {
    ListSections(manager, folder, WithoutExtension(file, pw::memo::kSectionFile), out);
  }
  return kResultOk;
}

// The one category of a type whose files have a common stem.
PWRESULT ListStem(WMSourceManager& manager, std::uint32_t displayName,
                  PWSourceCategoryVector& out) {
  const std::string folder = manager.Config->String(PWConfig::kDataFolder).Str();
  PWString location = manager.Config->String(PWConfig::kCalendarStem);
  if (location.IsEmpty()) {
    if (!manager.FindDefaultCalendar(location)) return kResultFailed;
  } else if (!folder.empty()) {
    location = folder + "\\" + location.Str();
  }
  AppendCategory(LoadString(displayName).Str(), location.Str(), out);
  return kResultOk;
}

// Appends the names that `out` doesn't hold yet. A name ends at its first zero byte.
void AppendNewNames(const std::vector<std::string>& names, PWStringVector& out) {
  std::unordered_set<std::string> known;
  for (std::uint32_t i = 0; i < out.Count(); ++i) known.insert(out.At(i)->Str());
  for (const std::string& name : names) {
    const std::string_view text = pw::UpToZero(name);
    if (known.emplace(text).second) out.AppendText(text);
  }
}

}  // namespace

PWRESULT WMSourceManager::ListCategories(const char* typeName, PWSourceCategoryVector& out) {
  const PWString type(typeName);
  if (type == kContactType) {
    return ListCardfiles(Config->String(PWConfig::kDataFolder).Str(), out);
  }
  if (type == "memo") return ListBinders(*this, out);
  if (type == "calendar") return ListStem(*this, strings::kCalendarCategory, out);
  if (type == "todo") return ListStem(*this, strings::kTaskCategory, out);
  // The clocks have none.
  if (type == "timezone") return kResultOk;
  return PWSourceManager::ListCategories(typeName, out);
}

bool WMSourceManager::CreateMissingCategories() {
  PWAppSrcTypeInfo* contacts =
      ApplicationSource == nullptr ? nullptr : ApplicationSource->FindTypeInfo(kContactType);
  if (contacts == nullptr) return false;
  bool anyMissing = false;
  for (std::uint32_t i = 0; i < contacts->Categories.Count(); ++i) {
    PWSourceCategory& category = *contacts->Categories.At(i);
    if (!category.Location.IsEmpty()) continue;
    NewCategory(category.Name(), kContactType, &category.Location);
    anyMissing = true;
  }
  return anyMissing;
}

PWRESULT WMSourceManager::CategoryFieldNames(const char* typeName, const char* location,
                                             PWStringVector& out) {
  if (!(PWString(typeName) == kContactType)) return kResultOk;
  if (CreateMissingCategories()) return kResultCategoryMade;
  WMCardFile file;
  if (file.Load(pw::TextOf(location)) != 0) return kResultFailed;
  std::vector<std::string> names;
  file.GetFieldNames(names);
  // The information manager doesn't take part in the contact log, which is always the last.
  if (GetProduct() == product::kInformationManager && !names.empty()) names.pop_back();
  AppendNewNames(names, out);
  return kResultOk;
}
