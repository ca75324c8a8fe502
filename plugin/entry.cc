#include "plugin/entry.h"

#include <new>

#include "plugin/import_manager.h"
#include "plugin/source_manager.h"

extern "C" PWObject* createObject(const char* name) {
  if (!(PWString(name) == "Object_ImportManager")) return nullptr;
  return new (std::nothrow) WMImportManager(new (std::nothrow) WMSourceManager(0));
}
