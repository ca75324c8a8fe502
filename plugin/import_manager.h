#pragma once

#include "framework/import_manager.h"

// What the engine gets of the module first: the way to the source manager, and the path of an
// import. It doesn't own the source manager, which outlives it.
class WMImportManager : public PWImportManager {
 public:
  explicit WMImportManager(PWSourceManager* manager) { SourceManager = manager; }

  // One path for all types: `typeName` doesn't matter.
  PWRESULT GetImportPath(const char* typeName, PWString& out) override;

  // For contacts: replaces the file of the import path by a cardfile of these fields. Always 0.
  PWRESULT PrepareImport(const char* typeName, PWStringVector& fieldNames) override;

  // Null or empty clears the path.
  PWRESULT SetImportPath(const char* path) override;

 private:
  PWString ImportPath;
};
