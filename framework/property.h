#pragma once

#include <type_traits>
#include <utility>

// A field of the contract that is also an operation of the same name: assigned and read like a
// field, called like an operation, without arguments to read and with one to set.
template <class T, bool = std::is_class_v<T>>
class PWProperty : public T {
 public:
  PWProperty() = default;
  PWProperty(const T& value) : T(value) {}  // NOLINT(google-explicit-constructor)

  template <class Value>
  requires std::is_assignable_v<T&, Value&&> PWProperty& operator=(Value&& value) {
    T::operator=(std::forward<Value>(value));
    return *this;
  }

  T operator()() const { return *this; }
  void operator()(const T& value) { T::operator=(value); }
};

// The same for a number or an enumeration.
template <class T>
class PWProperty<T, false> {
 public:
  PWProperty() = default;
  PWProperty(T value) : value(value) {}  // NOLINT(google-explicit-constructor)

  operator T() const { return value; }  // NOLINT(google-explicit-constructor)
  T operator()() const { return value; }
  void operator()(T newValue) { value = newValue; }

 private:
  T value{};
};
