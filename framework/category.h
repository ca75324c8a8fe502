#pragma once

#include <cstdint>

#include "framework/property.h"
#include "framework/string.h"
#include "framework/values.h"
#include "framework/vector.h"

// One unit that can be synchronised: a cardfile, a section of a binder, the calendar, the task
// list.
class PWSourceCategory : public PWObject {
 public:
  void Serialize(PWArchive& archive) override;
  PWRuntimeClass* RuntimeClass() override;
  PWObject* Clone() override { return new PWSourceCategory(*this); }

  PWProperty<PWString> Name;  // as the person sees it; `Name()` gives a copy
  PWString Location;          // where the data lies: what a source of the type opens
  std::uint32_t AppID = 0;    // pairs it with the engine's category; 0 is not paired
  PWBitField Flags;
  std::uint32_t Word = 0;
  bool Flag = false;
};

class PWSourceCategoryVector : public PWObjectVector {
 public:
  // The first category of that number, or null. Leaves the cursor alone.
  PWSourceCategory* FindByAppID(std::uint32_t id) const;

  PWSourceCategory* At(std::uint32_t index) const {
    return static_cast<PWSourceCategory*>(PWObjectVector::At(index));
  }

  PWObject* Clone() override;
};
