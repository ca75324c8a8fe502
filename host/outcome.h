#pragma once

#include <string>
#include <utility>
#include <variant>

namespace pw {

// Why something could not be done: one line for the person, which names the file or the word that
// is to blame.
struct Failure {
  std::string message;
};

// What an operation gives, or why it gives nothing.
template <class T>
class [[nodiscard]] Outcome {
 public:
  Outcome(T value) : state(std::move(value)) {}            // NOLINT(google-explicit-constructor)
  Outcome(Failure failure) : state(std::move(failure)) {}  // NOLINT(google-explicit-constructor)

  explicit operator bool() const { return std::holds_alternative<T>(state); }

  // Only of a success.
  T& operator*() { return std::get<T>(state); }
  const T& operator*() const { return std::get<T>(state); }
  T* operator->() { return &std::get<T>(state); }
  const T* operator->() const { return &std::get<T>(state); }

  // Only of a failure.
  const Failure& Why() const { return std::get<Failure>(state); }

 private:
  std::variant<T, Failure> state;
};

// For operations that give nothing but their success.
struct Done {};

}  // namespace pw
