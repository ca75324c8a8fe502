#include "base/process_wide.h"

namespace pw {
namespace {

// A list through the pieces themselves: a piece may be constructed before anything else of the
// program, and goes when its module is unloaded.
ProcessWideBase* first = nullptr;

}  // namespace

ProcessWideBase::ProcessWideBase() : previous(nullptr), next(first) {
  if (next != nullptr) next->previous = this;
  first = this;
}

ProcessWideBase::~ProcessWideBase() {
  if (previous != nullptr) previous->next = next;
  if (next != nullptr) next->previous = previous;
  if (first == this) first = next;
}

void ResetProcessWideState() {
  for (ProcessWideBase* piece = first; piece != nullptr; piece = piece->next) piece->Reset();
}

}  // namespace pw
