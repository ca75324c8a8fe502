#pragma once

#include <unistd.h>

#include <cerrno>
#include <utility>

namespace pw {

// Owns a file descriptor; -1 is none.
class Descriptor {
 public:
  Descriptor() = default;
  explicit Descriptor(int number) : number(number) {}
  Descriptor(Descriptor&& other) noexcept : number(std::exchange(other.number, -1)) {}
  Descriptor& operator=(Descriptor&& other) noexcept {
    std::swap(number, other.number);
    return *this;
  }
  ~Descriptor() { Close(); }

  bool IsOpen() const { return number >= 0; }
  int Number() const { return number; }

  // False if what was written didn't all reach the file. The descriptor is gone in any case.
  bool Close() { return number < 0 || close(std::exchange(number, -1)) == 0; }

 private:
  int number = -1;
};

// Calls until a signal no longer interrupts.
template <class Call>
auto Uninterrupted(Call call) {
  auto result = call();
  while (result < 0 && errno == EINTR) result = call();
  return result;
}

}  // namespace pw
