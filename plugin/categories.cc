#include <memory>
#include <string>
#include <unordered_set>
#include <vector>

#include "base/text.h"
#include "cardfile/card_file.h"
#include "framework/application.h"
#include "platform/platform.h"
#include "plugin/discovery.h"
#include "plugin/source_manager.h"
#include "plugin/string_table.h"

// What the person pairs with a folder of the engine: the categories of each type.
namespace {

constexpr const char* kContactType = "contact";
constexpr std::string_view kCardfileExtension = ".WMCard";

PWRESULT ListCardfiles(const std::string& folder, PWSourceCategoryVector& out) {
  const std::string prefix = folder + "\\";
  const std::string pattern = prefix + "*" + std::string(kCardfileExtension);
  for (const pw::FoundFile& file : pw::CurrentPlatform().files->Find(pattern)) {
    auto category = std::make_unique<PWSourceCategory>();
    category->Name = file.name.substr(0, file.name.size() - kCardfileExtension.size());
    category->Location = prefix + file.name;
    out.Append(category.release(), false);
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
  auto category = std::make_unique<PWSourceCategory>();
  category->Location = location;
  category->Name = LoadString(displayName);
  out.Append(category.release(), false);
  return kResultOk;
}

// Appends the names that `out` doesn't hold yet.
void AppendNewNames(const std::vector<std::string>& names, PWStringVector& out) {
  std::unordered_set<std::string> known;
  for (std::uint32_t i = 0; i < out.Count(); ++i) known.insert(out.At(i)->Str());
  for (const std::string& name : names) {
    if (known.insert(name).second) out.AppendText(name);
  }
}

}  // namespace

PWRESULT WMSourceManager::ListCategories(const char* typeName, PWSourceCategoryVector& out) {
  const PWString type(typeName);
  if (type == kContactType) {
    return ListCardfiles(Config->String(PWConfig::kDataFolder).Str(), out);
  }
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
