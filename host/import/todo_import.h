#pragma once

#include "host/formats/vtodo.h"
#include "host/import/incoming.h"

namespace pw {

// Fills the record of a task or call. A date that isn't in the calendar is remarked and left out.
void SetTodo(const Todo& todo, IncomingRecord& record);

}  // namespace pw
