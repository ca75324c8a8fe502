#pragma once

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <utility>

namespace pw {

// Reads little-endian fields from a byte string, and never beyond its end.
//
// A read that asks for more than is left gives zero (or the bytes that are there, for `Take`),
// moves to the end and makes `Short()` true from then on, so that a decoder reads a whole record
// field by field and asks once. The bytes aren't owned and must outlive the reader.
class ByteReader {
 public:
  explicit ByteReader(std::string_view bytes) : bytes(bytes) {}

  std::uint8_t U8() { return static_cast<std::uint8_t>(Number(1)); }
  std::uint16_t U16() { return static_cast<std::uint16_t>(Number(2)); }
  std::uint32_t U32() { return Number(4); }
  std::int32_t I32() { return static_cast<std::int32_t>(Number(4)); }

  // The next `count` bytes, or as many as are left. The view points into the bytes given.
  std::string_view Take(std::size_t count) {
    if (count > Remaining()) wasShort = true;
    const std::string_view taken = bytes.substr(position, count);
    position += taken.size();
    return taken;
  }

  // The next byte, which stays the next; nothing at the end.
  std::optional<char> Peek() const {
    if (position == bytes.size()) return std::nullopt;
    return bytes[position];
  }

  // Fills a field of fixed width; what the bytes don't reach stays as it is.
  template <std::size_t kWidth>
  void TakeInto(std::array<char, kWidth>& field) {
    const std::string_view taken = Take(kWidth);
    std::copy(taken.begin(), taken.end(), field.begin());
  }

  // Moves to an offset from the start. One beyond the end moves to the end, where any read is
  // short; the seek itself isn't.
  void Seek(std::size_t offset) { position = std::min(offset, bytes.size()); }

  std::size_t Position() const { return position; }
  std::size_t Remaining() const { return bytes.size() - position; }
  bool Short() const { return wasShort; }

 private:
  std::uint32_t Number(std::size_t width) {
    if (width > Remaining()) {
      wasShort = true;
      position = bytes.size();
      return 0;
    }
    std::uint32_t value = 0;
    for (std::size_t i = 0; i < width; ++i) {
      const auto byte = static_cast<std::uint8_t>(bytes[position + i]);
      value |= static_cast<std::uint32_t>(byte) << (8 * i);
    }
    position += width;
    return value;
  }

  std::string_view bytes;
  std::size_t position = 0;
  bool wasShort = false;
};

// Builds a byte string of little-endian fields.
class ByteWriter {
 public:
  void U8(std::uint8_t value) { Number(value, 1); }
  void U16(std::uint16_t value) { Number(value, 2); }
  void U32(std::uint32_t value) { Number(value, 4); }
  void I32(std::int32_t value) { Number(static_cast<std::uint32_t>(value), 4); }
  void Bytes(std::string_view text) { out.append(text); }
  template <std::size_t kWidth>
  void Bytes(const std::array<char, kWidth>& field) {
    out.append(field.data(), kWidth);
  }
  void Zeros(std::size_t count) { out.append(count, '\0'); }

  // Exactly `width` bytes: the text cut to them, or followed by zeros.
  void Padded(std::string_view text, std::size_t width);

  void Reserve(std::size_t size) { out.reserve(size); }
  std::size_t Size() const { return out.size(); }
  const std::string& Written() const { return out; }
  std::string Release() { return std::move(out); }

 private:
  void Number(std::uint32_t value, std::size_t width) {
    std::array<char, sizeof value> number{};
    for (std::size_t i = 0; i < width; ++i) number[i] = static_cast<char>(value >> (8 * i) & 0xFF);
    out.append(number.data(), width);
  }

  std::string out;
};

}  // namespace pw
