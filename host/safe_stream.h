#pragma once

#include <ostream>
#include <streambuf>
#include <string>
#include <string_view>

namespace pw {

// Passes text on without what could steer a terminal: names of files, and what stands in them, may
// hold anything. Control characters but line feeds and tabs become "?", as does malformed UTF-8. A
// character may come in pieces.
class SafeBuffer : public std::streambuf {
 public:
  // Not owned.
  explicit SafeBuffer(std::ostream& target) : target(target) {}

 protected:
  int_type overflow(int_type character) override;
  std::streamsize xsputn(const char* text, std::streamsize size) override;
  int sync() override;

 private:
  std::ostream& target;
  std::string held;  // the beginning of a character
};

// A stream with such a buffer, which holds nothing else back.
class SafeStream : public std::ostream {
 public:
  explicit SafeStream(std::ostream& target);

 private:
  SafeBuffer buffer;
};

}  // namespace pw
