#pragma once

#include <cstdint>
#include <string_view>

#include "base/cursor.h"
#include "calltask/frame_format.h"
#include "calltask/record_format.h"

// The records of the task file, "TASK.WMW".
namespace pw::calltask {

inline constexpr Magics kTaskMagics = {"WMWTASK20", "WMWTASK50"};

// Word A of a task.
//
//   bits      meaning
//   0 to 6    carried
//   7         1
//   8 to 14   carried
//   15        1
//   16 to 20  carried; the first four are the top bits of word C
//   21        no due date
//   22        completed
//   23        1
//   24        recurring
//   25 to 27  priority digit, 7 for none
//   28, 29    priority level 1 to 3, 0 for none
//   30        has a priority
//   31        1
inline constexpr std::uint32_t kHasPriority = 1U << 30;
inline constexpr std::uint32_t kNoDigit = 7;
struct TaskPriority {
  std::uint32_t digit = 0;  // 0 to 7
  std::uint32_t level = 0;  // 0 to 3
};
TaskPriority PriorityOf(std::uint32_t wordA);
std::uint32_t WithPriority(std::uint32_t wordA, const TaskPriority& priority);

// Word B of a task: its start date in the low half, its due date in the high one. Of either half:
//
//   bits     meaning
//   0 to 3   month, 0 for January
//   4 to 6   year since 1990, its low three bits
//   7        1
//   8 to 12  day
//   13       0
//   14       year since 1990, bit 3
//   15       1
//
// All of it 0 but the ones means no date. A date that is set has its year brought into 1990 to 2005
// and the rest cut to its bits; 0, 0, 0 sets none.
inline constexpr Date kNoTaskDate = {kFirstYear, 1, 0};
Date StartDateOf(std::uint32_t wordB);
Date DueDateOf(std::uint32_t wordB);
std::uint32_t WithStartDate(std::uint32_t wordB, const Date& date);
std::uint32_t WithDueDate(std::uint32_t wordB, const Date& date);

// What a task has beside its word A. Word C is only ever carried.
struct TaskWords {
  std::uint32_t b = kTopBits;
  std::uint32_t c = kTopBits;
};

// Task, version 30:
//
//   offset  width  field       meaning
//   0       4      flags       word A
//   4       4      b
//   8       4      c
//   12             texts       subject and note
//
// version 50:
//
//   offset  width  field       meaning
//   0       4      mask        of the four words behind it
//   4       4      idWord1
//   8       4      idWord2
//   12      4      lastChange
//   16      4                  0, masked, where a call has its due date; not read
//   20      4      flags       word A
//   24      4      b
//   28      4      c
//   32             texts
//
// Takes a task off the front of a block's bytes. False where there is no whole one: nothing is then
// to be made of what follows. What a version doesn't have is left alone.
bool TakeTask(std::string_view& bytes, FormatVersion version, RecordFields& task, TaskWords& words);
void EncodeTask(ByteWriter& out, FormatVersion version, const RecordFields& task,
                const TaskWords& words);

}  // namespace pw::calltask
