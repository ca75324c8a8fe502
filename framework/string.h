#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "framework/object.h"

struct PWModuleRecord;

// Single-byte text of the engine's code page.
//
// The three fields are public because texts cross the border in this form. `buffer` is owned (made
// with `new[]`), null for the empty string; `length` counts the characters and the terminator, so
// it is 0 for a string that was never set; `capacity` is the size of `buffer`. A string from
// elsewhere may hold only the terminator (`length` 1), and one that was reserved may have a buffer
// and length 0: the former is empty, the latter isn't.
class PWString : public PWObject {
 public:
  PWString() = default;
  PWString(const char* text) { Assign(Text(text)); }  // NOLINT(google-explicit-constructor)
  explicit PWString(std::string_view text) { Assign(text); }
  PWString(const PWString& other) : PWObject(other) { Assign(other.View()); }
  PWString(PWString&& other) noexcept { Swap(other); }
  ~PWString() override { Clear(); }

  // An empty text frees the buffer and zeroes the fields; any other takes exactly its size. A text
  // ends at its first zero byte.
  PWString& operator=(const char* text) { return Assign(Text(text)); }
  PWString& operator=(std::string_view text) { return Assign(text); }
  PWString& operator=(const std::string& text) { return Assign(text); }
  PWString& operator=(const PWString& other) {
    return this == &other ? *this : Assign(other.View());
  }
  PWString& operator=(PWString&& other) noexcept {
    Swap(other);
    return *this;
  }

  // The decimal text of a number.
  PWString& operator=(std::int32_t value);

  void Clear();

  // Frees the text and makes a zeroed buffer of `size` bytes. The caller copies a text in and sets
  // `length`.
  void Reserve(std::uint32_t size);

  bool IsEmpty() const { return buffer == nullptr || length == 1; }

  // The buffer, or null. Valid until the string changes.
  operator const char*() const { return buffer; }  // NOLINT(google-explicit-constructor)

  // The text without its terminator.
  std::string_view View() const;
  std::string Str() const { return std::string(View()); }

  // Whole texts, case and all; null is the empty text.
  bool operator==(const char* text) const { return View() == Text(text); }
  bool operator==(const PWString& other) const { return View() == other.View(); }

  PWString& operator+=(const char* text) { return Append(Text(text)); }
  PWString operator+(const char* text) const;
  void AddChar(char c) { Append(std::string_view(&c, 1)); }

  // The text of that number in the module's table. False, and the string empty, for a number that
  // the table doesn't have.
  bool Load(const PWModuleRecord* instance, std::uint32_t id);

  void Serialize(PWArchive& archive) override;
  PWRuntimeClass* RuntimeClass() override;
  PWObject* Clone() override { return new PWString(*this); }

  char* buffer = nullptr;
  std::uint32_t length = 0;
  std::uint32_t capacity = 0;

 private:
  static std::string_view Text(const char* text) {
    return text == nullptr ? std::string_view() : std::string_view(text);
  }
  PWString& Assign(std::string_view text);
  PWString& Append(std::string_view text);
  void Swap(PWString& other) noexcept;
};

// What stands for a module at the engine, which only passes the pointer on: the module's string
// table, in the order of its numbers. The module makes it at load.
struct PWModuleString {
  std::uint16_t number;
  const char* text;
};
struct PWModuleRecord {
  const PWModuleString* strings = nullptr;
  std::size_t stringCount = 0;
};
