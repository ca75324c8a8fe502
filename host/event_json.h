#pragma once

#include "framework/record.h"
#include "host/json_fields.h"

namespace pw {

// Events in the form that `RecordForm` tells of.
Json EventToJson(PWRecord& record);
void EventFromJson(JsonFields& fields, PWRecord& record);

}  // namespace pw
