#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

namespace pw::test {

// This machine's compiled zone files, laid out by hand. Both data parts hold the same.
struct CompiledZoneBytes {
  struct Change {
    std::int64_t at = 0;
    std::uint8_t type = 0;
  };

  char version = '2';
  std::vector<std::int32_t> types = {0};  // offsets
  std::vector<Change> changes;
  std::uint32_t leapSeconds = 0;
  std::string rule = "UTC0";

  std::string Build() const { return Part(4) + Part(8) + "\n" + rule + "\n"; }

  static std::string Big(std::uint64_t value, std::size_t width) {
    std::string bytes;
    for (std::size_t i = width; i-- > 0;) bytes += static_cast<char>(value >> (8 * i));
    return bytes;
  }

 private:
  std::string Part(std::size_t timeSize) const {
    std::string bytes = std::string("TZif") + version + std::string(15, '\0');
    for (const std::size_t count : {std::size_t{1}, std::size_t{1}, std::size_t{leapSeconds},
                                    changes.size(), types.size(), std::size_t{4}}) {
      bytes += Big(count, 4);
    }
    for (const Change& change : changes) {
      bytes += Big(static_cast<std::uint64_t>(change.at), timeSize);
    }
    for (const Change& change : changes) bytes += static_cast<char>(change.type);
    for (const std::int32_t offset : types) {
      bytes += Big(static_cast<std::uint32_t>(offset), 4) + std::string("\0\0", 2);
    }
    bytes += std::string("ABC\0", 4);
    bytes += std::string(leapSeconds * (timeSize + 4), '\0');
    return bytes + std::string("\0\0", 2);
  }
};

}  // namespace pw::test
