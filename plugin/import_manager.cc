#include "plugin/import_manager.h"

#include <string>
#include <vector>

#include "cardfile/create_cardfile.h"
#include "platform/platform.h"

PWRESULT WMImportManager::GetImportPath(const char* /*typeName*/, PWString& out) {
  out = ImportPath;
  return kResultOk;
}

PWRESULT WMImportManager::SetImportPath(const char* path) {
  ImportPath = path;
  return kResultOk;
}

PWRESULT WMImportManager::PrepareImport(const char* typeName, PWStringVector& fieldNames) {
  if (!(PWString(typeName) == "contact")) return kResultOk;
  const std::string path = ImportPath.Str();
  pw::CurrentPlatform().files->Delete(path);
  std::vector<std::string> names;
  for (PWObject* name = fieldNames.First(); name != nullptr; name = fieldNames.Next()) {
    names.push_back(static_cast<PWString*>(name)->Str());
  }
  if (!path.empty()) CreateCardfile(path, names);
  return kResultOk;
}
