#pragma once

#include <string>

#include "host/drive_records.h"
#include "host/import/incoming.h"
#include "host/outcome.h"

// Records of which a file may tell only some, in the JSON form that the engine's calls have.
namespace pw {

// Takes what a file tells of a record: as `told`, and as the new record that it makes by itself. A
// character that the organiser lacks, and a member that no such record has, are remarked. Gives
// what is wrong with it, or nothing.
std::string TakeTold(JsonInput told, const RecordForm& form, IncomingRecord& incoming);

// The record that is there with what the file tells laid over it. A failure says why that can't be.
Outcome<PWRecord> WithTold(PWRecord stored, const JsonInput& told, const RecordForm& form);

}  // namespace pw
