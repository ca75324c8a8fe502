#pragma once

#include <filesystem>
#include <memory>
#include <optional>

#include "framework/object.h"
#include "host/outcome.h"

namespace pw {

// The plug-in module, loaded into this process. Destruction unloads it; all that it made must be
// gone by then.
class ModuleLibrary {
 public:
  // The platform must have been set: the module may use it from the start.
  static Outcome<ModuleLibrary> Load(const std::filesystem::path& file);

  // A new object by the name that the module knows it by, owned by the caller; null for another
  // name.
  PWObject* CreateObject(const char* name) const { return create(name); }

 private:
  using Create = PWObject* (*)(const char*);
  struct Unload {
    void operator()(void* handle) const;
  };

  ModuleLibrary(std::unique_ptr<void, Unload> handle, Create create)
      : handle(std::move(handle)), create(create) {}

  std::unique_ptr<void, Unload> handle;
  Create create;
};

// Where the module lies: as the profile says, or else beside this program, or else where an
// installation puts it.
Outcome<std::filesystem::path> FindModule(const std::optional<std::filesystem::path>& configured);

}  // namespace pw
