#pragma once

#include <string_view>

#include "host/drive_records.h"
#include "host/import/incoming.h"

namespace pw {

// The records of a JSON file of our own export, of a type other than contact: an array of objects
// with the members "id", "category" and "record", of which the last one must be there. A record
// that isn't of the form is among the problems, as is a text that isn't such an array, with the
// line where it is no JSON, or has brackets in brackets deeper than any record.
Incoming ReadTypedJson(std::string_view text, const RecordForm& form);

}  // namespace pw
