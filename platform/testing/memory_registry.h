#pragma once

#include <map>
#include <memory>
#include <optional>
#include <string>

#include "platform/registry.h"

namespace pw {

// A registry without a file, for tests. As in a file, names must be
// lines (`IsRegistryLine`).
class MemoryRegistry : public Registry {
 public:
  bool readOnly = false;    // nothing can be opened for writing
  bool failCreate = false;  // no key can be made, nor opened by `Create`
  int opens = 0;            // calls of `Open` and `Create`, failed ones among them

  // Past the switches, for setting a scene and looking at it. Setting makes the key.
  void Set(const std::string& path, const std::string& name, const RegistryValue& value);
  std::optional<RegistryValue> Get(const std::string& path, const std::string& name) const;
  void AddKey(const std::string& path);
  bool HasKey(const std::string& path) const;

  std::unique_ptr<RegistryKey> Open(const std::string& path, RegistryAccess access) override;
  std::unique_ptr<RegistryKey> Create(const std::string& path) override;

 private:
  class Key;
  using Values = std::map<std::string, RegistryValue>;

  std::map<std::string, Values> keys;  // by folded path and name
};

}  // namespace pw
