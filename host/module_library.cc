#include "host/module_library.h"

#include <dlfcn.h>

#include <system_error>
#include <utility>

namespace pw {
namespace {

namespace fs = std::filesystem;

constexpr const char* kModuleName = "wmplugin.so";
constexpr const char* kInstalledFolder = "../lib/pairwise";
constexpr const char* kExport = "createObject";

Failure LoadFailure(const fs::path& file) {
  const char* reason = ::dlerror();
  return {file.string() + ": not a module that can be loaded" +
          (reason == nullptr ? std::string() : std::string(" (") + reason + ")")};
}

}  // namespace

void ModuleLibrary::Unload::operator()(void* handle) const {
  ::dlclose(handle);
}

Outcome<ModuleLibrary> ModuleLibrary::Load(const fs::path& file) {
  std::unique_ptr<void, Unload> handle(::dlopen(file.c_str(), RTLD_NOW | RTLD_LOCAL));
  if (handle == nullptr) return LoadFailure(file);
  auto create = reinterpret_cast<Create>(::dlsym(handle.get(), kExport));
  if (create == nullptr) return LoadFailure(file);
  return ModuleLibrary(std::move(handle), create);
}

Outcome<fs::path> FindModule(const std::optional<fs::path>& configured) {
  if (configured) return *configured;
  std::error_code error;
  const fs::path folder = fs::read_symlink("/proc/self/exe", error).parent_path();
  for (const fs::path& candidate :
       {folder / kModuleName, (folder / kInstalledFolder / kModuleName).lexically_normal()}) {
    if (fs::exists(candidate, error)) return candidate;
  }
  return Failure{std::string(kModuleName) + " is neither beside this program in " +
                 folder.string() + " nor installed; the profile's 'module' can name it"};
}

}  // namespace pw
