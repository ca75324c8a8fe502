#include "plugin/import_manager.h"

PWRESULT WMImportManager::GetImportPath(const char* /*typeName*/, PWString& out) {
  out = ImportPath;
  return kResultOk;
}

PWRESULT WMImportManager::SetImportPath(const char* path) {
  ImportPath = path;
  return kResultOk;
}
