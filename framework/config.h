#pragma once

#include <cstdint>
#include <map>

#include "framework/object.h"
#include "framework/string.h"

// The settings of one application source: numbered texts. In memory only; whoever plays the engine
// loads and saves them.
class PWConfig : public PWObject {
 public:
  // The organiser's user-data folder, without a backslash at its end.
  static constexpr std::uint32_t kDataFolder = 2;
  // The organiser's install folder, as it stood when the setup page took a folder.
  static constexpr std::uint32_t kInstallFolder = 3;
  // The stem of the calendar and task files, without a path.
  static constexpr std::uint32_t kCalendarStem = 5;
  // The registry key of the running product.
  static constexpr std::uint32_t kProductKey = 4000;

  // The live text of an entry, which may be assigned; an entry that was never set is empty. Valid
  // for the life of the store.
  PWString& String(std::uint32_t id) { return entries[id]; }
  void String(std::uint32_t id, const char* value) { entries[id] = value; }

 private:
  std::map<std::uint32_t, PWString> entries;
};
