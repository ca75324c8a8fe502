#pragma once

#include <string>
#include <vector>

#include "host/drive_records.h"
#include "host/import/incoming.h"

namespace pw {

// What a person knows a record by: where it was, and its text.
std::string LabelOf(const IncomingRecord& incoming, const RecordForm& form);

// What of a record isn't kept as it was given, for a person. Where the file told only some of one
// that was there already that alone was given.
std::vector<std::string> ChangesOf(PWRecord& given, PWRecord& kept, const RecordForm& form,
                                   const JsonInput& toldOfStored);

}  // namespace pw
