#pragma once

#include "framework/record.h"
#include "host/formats/vtodo.h"

namespace pw {

// What a record of the engine's says of a task or call. It has no UID yet, and no moment of change.
Todo TodoOf(PWRecord& record);

}  // namespace pw
