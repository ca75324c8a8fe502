#include "host/system_zones/compiled_zone.h"

#include <algorithm>
#include <iterator>

#include "base/cursor.h"

// A compiled zone file; numbers are big-endian.
//
//   file := header data32 header data64 rule
//   rule := "\n" line "\n"
//
// Header, 44 bytes.
//
//   offset  width  field
//   0       4      "TZif"
//   4       1      version: 0, or a digit from '2' on
//   5       15     unused
//   20      4      utcCount, marks that nobody needs here
//   24      4      standardCount, the same
//   28      4      leapCount
//   32      4      changeCount
//   36      4      typeCount
//   40      4      nameBytes
//
// Data, in which a time has 4 bytes, or 8 in the second one.
//
//   changeCount times, ascending
//   changeCount bytes: the type that each change leads to
//   typeCount types: signed offset (4), is daylight (1), index of its name (1)
//   nameBytes bytes
//   leapCount leap seconds: time, and 4 bytes
//   standardCount and utcCount bytes
namespace pw {
namespace {

constexpr std::string_view kMagic = "TZif";
constexpr std::uint8_t kFirstWithRule = '2';
constexpr std::size_t kUnusedSize = 15;
constexpr std::size_t kTypeSize = 4 + 1 + 1;
constexpr std::size_t kShortTime = 4;
constexpr std::size_t kLongTime = 8;

std::uint32_t TakeBig32(ByteReader& in) {
  std::uint32_t value = 0;
  for (int i = 0; i < 4; ++i) value = value << 8 | in.U8();
  return value;
}

std::int64_t TakeBig64(ByteReader& in) {
  const std::uint64_t high = TakeBig32(in);
  return static_cast<std::int64_t>(high << 32 | TakeBig32(in));
}

struct ZoneHeader {
  std::uint8_t version = 0;
  std::uint64_t utcCount = 0;
  std::uint64_t standardCount = 0;
  std::uint64_t leapCount = 0;
  std::uint64_t changeCount = 0;
  std::uint64_t typeCount = 0;
  std::uint64_t nameBytes = 0;

  // At most a few times 2^35.
  std::uint64_t DataSize(std::size_t timeSize) const {
    return changeCount * (timeSize + 1) + typeCount * kTypeSize + nameBytes +
           leapCount * (timeSize + 4) + standardCount + utcCount;
  }
};

std::optional<ZoneHeader> TakeHeader(ByteReader& in) {
  if (in.Take(kMagic.size()) != kMagic) return std::nullopt;
  ZoneHeader header;
  header.version = in.U8();
  in.Take(kUnusedSize);
  header.utcCount = TakeBig32(in);
  header.standardCount = TakeBig32(in);
  header.leapCount = TakeBig32(in);
  header.changeCount = TakeBig32(in);
  header.typeCount = TakeBig32(in);
  header.nameBytes = TakeBig32(in);
  if (in.Short()) return std::nullopt;
  return header;
}

// The 64-bit data, all of whose bytes are there. False if a change leads to no type, or the changes
// are out of order.
bool TakeData(ByteReader& in, const ZoneHeader& header, CompiledZone& zone) {
  zone.changes.resize(header.changeCount);
  for (CompiledZone::Change& change : zone.changes) change.at = TakeBig64(in);
  const bool ascending = std::is_sorted(
      zone.changes.begin(), zone.changes.end(),
      [](const CompiledZone::Change& a, const CompiledZone::Change& b) { return a.at < b.at; });
  const std::string_view types = in.Take(header.changeCount);
  std::vector<std::int32_t> offsets(header.typeCount);
  for (std::int32_t& offset : offsets) {
    offset = static_cast<std::int32_t>(TakeBig32(in));
    in.Take(kTypeSize - sizeof offset);
  }
  in.Take(header.nameBytes + header.standardCount + header.utcCount);
  if (!ascending || offsets.empty()) return false;
  zone.firstOffset = offsets.front();
  for (std::size_t i = 0; i < types.size(); ++i) {
    const auto type = static_cast<unsigned char>(types[i]);
    if (type >= offsets.size()) return false;
    zone.changes[i].offset = offsets[type];
  }
  return true;
}

std::optional<RuleLine> TakeRule(ByteReader& in) {
  std::string_view text = in.Take(in.Remaining());
  if (text.empty() || text.front() != '\n') return std::nullopt;
  text.remove_prefix(1);
  const std::size_t end = text.find('\n');
  if (end == std::string_view::npos) return std::nullopt;
  return ParseRuleLine(text.substr(0, end));
}

}  // namespace

std::optional<CompiledZone> ParseCompiledZone(std::string_view bytes) {
  ByteReader in(bytes);
  const auto first = TakeHeader(in);
  if (!first || first->version < kFirstWithRule) return std::nullopt;
  const std::uint64_t skipped = first->DataSize(kShortTime);
  if (skipped > in.Remaining()) return std::nullopt;
  in.Take(skipped);

  const auto second = TakeHeader(in);
  if (!second || second->leapCount != 0) return std::nullopt;
  if (second->DataSize(kLongTime) > in.Remaining()) return std::nullopt;
  CompiledZone zone;
  if (!TakeData(in, *second, zone)) return std::nullopt;
  const auto rule = TakeRule(in);
  if (!rule) return std::nullopt;
  zone.rule = *rule;
  return zone;
}

std::int32_t OffsetAt(const CompiledZone& zone, std::int32_t utc) {
  const auto next =
      std::upper_bound(zone.changes.begin(), zone.changes.end(), utc,
                       [](std::int64_t at, const auto& change) { return at < change.at; });
  if (next == zone.changes.end()) return OffsetAt(zone.rule, utc);
  return next == zone.changes.begin() ? zone.firstOffset : std::prev(next)->offset;
}

}  // namespace pw
