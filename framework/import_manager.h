#pragma once

#include "framework/result.h"
#include "framework/string.h"
#include "framework/vector.h"

class PWSourceManager;

// The first object that the engine gets from a module, and its way to all others.
class PWImportManager : public PWObject {
 public:
  // The path that an import goes to.
  virtual PWRESULT GetImportPath(const char* typeName, PWString& out) = 0;
  virtual PWRESULT SetImportPath(const char* path) = 0;

  // Makes that path ready to receive records of these fields.
  virtual PWRESULT PrepareImport(const char* /*typeName*/, PWStringVector& /*fieldNames*/) {
    return kResultOk;
  }

  // Not owned: the engine deletes both, each by itself.
  PWSourceManager* SourceManager = nullptr;
};
