#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

#include "base/text.h"
#include "calendar/calendar_store.h"
#include "calltask/call_store.h"
#include "calltask/task_store.h"
#include "cardfile/card_templates.h"
#include "cardfile/create_cardfile.h"
#include "cardfile/format.h"
#include "cardfile/template_dialog.h"
#include "framework/dialogs.h"
#include "framework/registry.h"
#include "memo/memo_sections.h"
#include "options/option_page.h"
#include "platform/platform.h"
#include "plugin/source_manager.h"
#include "plugin/string_table.h"

// Categories made and deleted: the files behind them.
namespace {

constexpr const char* kTemplateList = "\\Data\\crdstyle.dat";

// What a file can't be named by becomes a blank, and blanks at the ends go. The second byte of a
// character of two is none of these, whatever its value.
std::string CleanName(std::string name) {
  constexpr std::string_view kUnfit = "/\\?*|:<>\"";
  pw::Files& files = *pw::CurrentPlatform().files;
  for (std::size_t at = 0; at < name.size(); ++at) {
    if (files.IsLeadByte(static_cast<unsigned char>(name[at]))) {
      ++at;
    } else if (kUnfit.find(name[at]) != std::string_view::npos) {
      name[at] = ' ';
    }
  }
  name.erase(name.find_last_not_of(' ') + 1);
  name.erase(0, std::min(name.find_first_not_of(' '), name.size()));
  return name;
}

// The names of all cardfiles that were asked for, tabs between them, since they were last cleared.
// One key for all editions, and whether or not the file is then made.
void RememberName(const std::string& name) {
  PWRegistry registry;
  registry.Open(LoadString(strings::kMainKeyDesktop), false);
  PWString names;
  registry.Read("SyncCatNames", names);
  std::string all = names.Str();
  if (!all.empty()) all += '\t';
  registry.Write("SyncCatNames", (all + name).c_str());
  registry.Close();
}

PWRESULT NewCardfile(const std::string& path, const std::string& fileName,
                     const std::string& installFolder) {
  if (pw::CurrentPlatform().files->Exists(path)) return kResultFailed;
  const PWHelp help(pw::options::kHelpContext, false);
  const auto fields = ChooseTemplate(MainWindowId(), fileName, installFolder + kTemplateList);
  if (!fields) return kResultFailed;
  return CreateCardfile(path, pw::cardfile::FieldsOf(*fields)) == 0 ? kResultOk : kResultFailed;
}

// The organiser's odd order: where the calendar's files could be made anew no task or call file is
// made, and it counts as failed.
PWRESULT NewTaskList(const std::string& path) {
  if (ResetFiles(path)) return kResultFailed;
  WMTaskStore::CreateTaskStore(path);
  return WMCallStore::CreateCallStore(path) == 0 ? kResultOk : kResultFailed;
}

}  // namespace

PWRESULT WMSourceManager::NewCategory(const char* name, const char* typeName, PWString* location) {
  const PWString type(typeName);
  const std::string cleanName = CleanName(pw::TextOf(name));
  const std::string path = Config->String(PWConfig::kDataFolder).Str() + "\\" + cleanName;
  const auto tell = [&](const std::string& where) {
    if (location != nullptr) *location = where;
  };
  if (type == "contact") {
    const std::string fileName = cleanName + std::string(pw::cardfile::kExtension);
    RememberName(fileName);
    tell(path + std::string(pw::cardfile::kExtension));
    return NewCardfile(path + std::string(pw::cardfile::kExtension), fileName,
                       Config->String(PWConfig::kInstallFolder).Str());
  }
  if (type == "calendar") {
    tell(path);
    return ResetFiles(path) ? kResultOk : kResultFailed;
  }
  if (type == "todo") {
    tell(path);
    return NewTaskList(path);
  }
  if (type == "memo") {
    tell(path + ";" + pw::TextOf(name));
    return CreateMemoSection(path, pw::TextOf(name)) == 0 ? kResultOk : kResultFailed;
  }
  return type == "timezone" ? kResultOk : kResultFailed;
}

PWRESULT WMSourceManager::DeleteCategory(const char* typeName, const char* location) {
  const PWString type(typeName);
  if (!(type == "contact") && !(type == "memo")) return kResultOk;
  const std::string path = pw::TextOf(location);
  pw::Files& files = *pw::CurrentPlatform().files;
  return files.IsReadableAndWritable(path) && files.Delete(path) ? kResultOk : kResultFailed;
}
