#pragma once

#include <string>
#include <vector>

#include "framework/log.h"

namespace pw::test {

// Keeps its lines, each behind the number of its picture.
class TestLog : public PWLog {
 public:
  void Add(const char* text, ELogItemImage image) override {
    lines.push_back(std::to_string(image) + " " + text);
  }
  std::vector<std::string> lines;
};

}  // namespace pw::test
