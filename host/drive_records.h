#pragma once

#include <string_view>

#include "framework/record.h"
#include "host/json_fields.h"

namespace pw {

// How the records of one data type stand in JSON.
struct RecordForm {
  std::string_view type;

  Json (*toJson)(PWRecord& record);

  // Sets what the object names; anything else keeps a fresh record's value. What can't be set is
  // remembered by `fields`.
  void (*fromJson)(JsonFields& fields, PWRecord& record);
};

// Null for a type whose records have no such form.
const RecordForm* FindRecordForm(std::string_view type);

}  // namespace pw
