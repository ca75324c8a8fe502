#pragma once

#include <string>
#include <vector>

#include "framework/record.h"
#include "host/formats/record_uid.h"
#include "host/json_fields.h"

namespace pw {

// A record on its way into the organiser.
struct IncomingRecord {
  std::string where;     // for a person: "record 3", "line 12"
  RecordId id;           // that it had in its file
  std::string category;  // the name of the one that it was in; empty where the file doesn't tell
  PWRecord record;       // as the engine has it

  // What the file names of the record, as members of its JSON form, where it may leave some out: a
  // record that is there keeps those. Null where the file tells the record whole, and of a contact,
  // whose source keeps what the record doesn't name.
  JsonInput told;

  // Why it can't become a new record, as it doesn't tell enough; empty if it can.
  std::string lacks;

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

  // What of all of the file doesn't come along, though each record can be read.
  std::vector<std::string> remarks;
};

}  // namespace pw
