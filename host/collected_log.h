#pragma once

#include <string>
#include <vector>

#include "framework/log.h"

namespace pw {

struct LogLine {
  ELogItemImage image;
  std::string text;  // in the organiser's code page
};

// A run's log, kept in memory. The lines aren't owned, as the source manager deletes its log.
class CollectedLog : public PWLog {
 public:
  explicit CollectedLog(std::vector<LogLine>& lines) : lines(lines) {}

  void Add(const char* text, ELogItemImage image) override {
    lines.push_back({image, text == nullptr ? "" : text});
  }

 private:
  std::vector<LogLine>& lines;
};

}  // namespace pw
