#pragma once

#include <string>
#include <vector>

class PWStringVector;

// Which field of the engine's contact goes with which field of the cardfile, in order.
struct PWFieldMapEntry {
  std::string engineField;
  std::string sourceField;
};

struct PWFieldMap {
  std::vector<PWFieldMapEntry> entries;

  // Each name, once, to itself.
  static PWFieldMap Identity(const PWStringVector& names);
};
