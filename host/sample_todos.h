#pragma once

#include <cstddef>

#include "framework/record.h"

namespace pw {

// A task or call of the sample, whose people are those of its cards. Dates are "YYYY-MM-DD", null
// for none; texts are UTF-8.
struct SampleTodo {
  bool call;
  const char* subject;
  const char* start;
  const char* due;
  int priority;  // as the engine numbers them: 0 low, 1 normal, 2 high
  bool completed;
  const char* note;
};

extern const SampleTodo kSampleTodos[];
extern const std::size_t kSampleTodoCount;

// As the engine passes it.
PWRecord RecordOf(const SampleTodo& todo);

}  // namespace pw
