#pragma once

#include <cstdint>
#include <memory>

#include "framework/string.h"
#include "framework/values.h"
#include "framework/vector.h"

// Classes that the engine loads by their names. Nothing here makes one.

// Two texts, a word, a stamp, and two objects.
class WMFile : public PWObject {
 public:
  PWRuntimeClass* RuntimeClass() override;

  // The clone shares the two objects, which go with the last file that has them.
  PWObject* Clone() override { return new WMFile(*this); }

  PWString TextA;
  PWString TextB;
  std::uint32_t Word = 0;
  PWDateTimeStamp Stamp;
  std::shared_ptr<PWObject> ObjectA;
  std::shared_ptr<PWObject> ObjectB;
};

class WMFileVector : public PWObjectVector {
 public:
  PWRuntimeClass* RuntimeClass() override;
  PWObject* Clone() override { return new WMFileVector(*this); }
};
