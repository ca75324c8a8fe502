#include "calltask/block_reader.h"

#include "calltask/frame_format.h"

namespace pw::calltask {
namespace {

// Leaves what is behind the slots. False if a record can't be taken.
bool TakeSlots(std::string_view& rest, const BlockReader::Take& take) {
  for (std::size_t slot = 0; slot < kSlots && !rest.empty(); ++slot) {
    if (rest.front() == kEmptySlot) {
      rest.remove_prefix(1);
    } else if (!take(rest)) {
      return false;
    }
  }
  return true;
}

}  // namespace

bool BlockReader::Read(std::string_view block, const Take& take) {
  if (budget.IsSpent()) return false;
  std::string_view rest = block;
  const bool isRead = TakeSlots(rest, take);
  budget.Spend(block.size() - rest.size());
  return isRead;
}

}  // namespace pw::calltask
