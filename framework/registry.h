#pragma once

#include <cstdint>
#include <memory>

#include "framework/string.h"

namespace pw {
class RegistryKey;
}

// One key under the registry's local-machine root. Every operation but `Open` does nothing, and
// gives 0, unless the key is open.
class PWRegistry {
 public:
  PWRegistry();
  ~PWRegistry();
  PWRegistry(const PWRegistry&) = delete;
  PWRegistry& operator=(const PWRegistry&) = delete;

  // Opens an existing key for reading and writing. Non-zero on success. The flag has no meaning
  // here.
  int Open(const char* keyPath, bool flag);

  // A text value, or a number value. Non-zero on success; otherwise `out` is left alone.
  int Read(const char* name, PWString& out);
  int Read(const char* name, std::uint32_t* out);

  // A text value; null is the empty text. Non-zero on success.
  int Write(const char* name, const char* value);

  // Non-zero if a key was open.
  int Close();

 private:
  std::unique_ptr<pw::RegistryKey> key;
};
