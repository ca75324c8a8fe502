#pragma once

#include <utility>

namespace pw {

// What the engine's contract makes one for the whole process.
//
// Each piece of such state is one `ProcessWide<T>` beside the code that owns it. It starts from the
// value given, and `ResetProcessWideState` puts every piece back to its own, so that no test sees
// what another left. Unsynchronised: the engine makes all calls on one thread.
class ProcessWideBase {
 public:
  ProcessWideBase(const ProcessWideBase&) = delete;
  ProcessWideBase& operator=(const ProcessWideBase&) = delete;

 protected:
  ProcessWideBase();
  virtual ~ProcessWideBase();

 private:
  friend void ResetProcessWideState();
  virtual void Reset() = 0;

  ProcessWideBase* previous;
  ProcessWideBase* next;
};

// Puts every piece of state that is loaded now back to the value that it started from.
void ResetProcessWideState();

template <class T>
class ProcessWide final : public ProcessWideBase {
 public:
  explicit ProcessWide(T (*make)() = [] { return T(); }) : make(make), value(make()) {}

  T& operator*() { return value; }
  T* operator->() { return &value; }

 private:
  void Reset() override { value = make(); }

  T (*make)();
  T value;
};

}  // namespace pw
