#pragma once

#include <cstddef>
#include <string>
#include <vector>

#include "framework/record.h"

namespace pw {

// A record on its way into the organiser.
struct IncomingRecord {
  std::string where;     // for a person: "record 3", "line 12"
  std::string id;        // that it had in its file, in UTF-8; empty where there is none
  std::string category;  // the name of the one that it was in; empty where the file doesn't tell
  PWRecord record;       // as the engine has it

  // What of it doesn't come along, for a person.
  std::vector<std::string> remarks;
};

// The text in the organiser's code page; what that lacks becomes "?", which is remarked under the
// name of the text. The engine's texts end at a zero byte, so one becomes a blank.
std::string Incorporated(const std::string& utf8, const char* name, IncomingRecord& record);

// What a file to be imported holds.
struct Incoming {
  std::vector<IncomingRecord> records;

  // What of the file can't be read, or not all of it, a line each.
  std::vector<std::string> problems;
};

}  // namespace pw
