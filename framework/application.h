#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include "framework/category.h"
#include "framework/result.h"
#include "framework/string.h"
#include "framework/vector.h"
#include "platform/windows.h"

// One data type of one application source.
class PWAppSrcTypeInfo : public PWObject {
 public:
  explicit PWAppSrcTypeInfo(const char* typeName) : Name(typeName) {}

  PWObject* Clone() override { return new PWAppSrcTypeInfo(*this); }

  PWString Name;
  PWSourceCategoryVector Categories;
};

// The engine's record of the module as a source of data.
class PWApplicationSource : public PWObject {
 public:
  // The type of exactly that name, or null.
  PWAppSrcTypeInfo* FindTypeInfo(const char* typeName) const;

  PWObjectVector Types;  // of `PWAppSrcTypeInfo`
  std::int32_t SyncMode = 1;
};

// A data type in the engine.
class PWApplicationType : public PWObject {
 public:
  PWApplicationType(const char* name, bool syncing) : name(name), syncing(syncing) {}

  PWString Name() const { return name; }
  bool IsSyncing() const { return syncing; }
  PWSourceCategoryVector& CategoryVector() { return categories; }

 private:
  PWString name;
  bool syncing;
  PWSourceCategoryVector categories;
};

// The engine's main window.
class PWWindow {
 public:
  explicit PWWindow(pw::WindowId id) : id(id) {}
  pw::WindowId Id() const { return id; }

 private:
  pw::WindowId id;
};

// The gateway into the engine, over the one engine context of the process.
class PWApplication {
 public:
  // Null when the engine has no window.
  static PWWindow* MainWindow();

  // The engine's data types, one after the other; null at the end.
  static PWApplicationType* FirstType();
  static PWApplicationType* NextType();

  // Asks the engine to read the source's category lists again. It does so in its own time: the
  // request is kept in the engine context.
  static PWRESULT RefreshCategories(PWApplicationSource* source, bool flag);
};
