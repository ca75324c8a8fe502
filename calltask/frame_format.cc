#include "calltask/frame_format.h"

#include "base/cursor.h"

namespace pw::calltask {
namespace {

constexpr std::int32_t kKeysOfYear = frame::kDayEntries;
constexpr std::int32_t kFirstYearSince1900 = kFirstYear - 1900;

bool IsEmpty(const frame::YearEntry& year) {
  return year.year <= 0 || year.offset == 0;
}

// Adds the blocks that a year's table names. False if the table isn't whole.
bool TakeYear(std::string_view file, const frame::YearEntry& year, Frame& found) {
  ByteReader in(file);
  in.Seek(year.offset);
  if (in.Remaining() < frame::kYearTableSize) return false;
  const std::uint16_t first = FirstKeyOf(year.year);
  for (std::size_t day = 0; day < frame::kDayEntries; ++day) {
    const std::size_t at = in.Position();
    const frame::DayEntry entry = frame::DecodeDayEntry(in);
    if (entry.size == 0) continue;
    if (const auto block = frame::BlockOf(file, entry)) {
      found.days.push_back({static_cast<std::uint16_t>(first + day), *block});
    } else {
      found.blocksOutside.push_back(at);
    }
  }
  return true;
}

}  // namespace

std::optional<FormatVersion> VersionOf(const Header& header, const Magics& magics) {
  const std::string_view magic = frame::MagicOf(header);
  if (magic == magics.version50) return FormatVersion::k50;
  if (magic == magics.version30) return FormatVersion::k30;
  return std::nullopt;
}

void SetMagic(Header& header, const Magics& magics, FormatVersion version) {
  frame::SetMagic(header, version == FormatVersion::k50 ? magics.version50 : magics.version30);
}

std::uint16_t FirstKeyOf(std::int16_t yearSince1900) {
  return static_cast<std::uint16_t>((yearSince1900 - kFirstYearSince1900) * kKeysOfYear);
}

std::int32_t YearOfKey(std::uint16_t key) {
  return kFirstYear + key / kKeysOfYear;
}

std::int32_t DayOfKey(std::uint16_t key) {
  return key % kKeysOfYear;
}

std::uint16_t FilingKey(std::int32_t year, std::int32_t dayOfYear) {
  if (year < kFirstYear || year > kLastYear) return kCatchAllKey;
  return static_cast<std::uint16_t>((year - kFirstYear) * kKeysOfYear + dayOfYear);
}

Frame ReadFrame(std::string_view file) {
  Frame found;
  ByteReader in(file);
  in.TakeInto(found.header);
  found.hasHeader = !in.Short();
  if (!found.hasHeader) return found;
  found.isWhole = in.Remaining() >= frame::kYearIndexSize;
  if (!found.isWhole) return found;
  for (std::size_t i = 0; i < frame::kYearEntries; ++i) {
    const frame::YearEntry year = frame::DecodeYearEntry(in);
    if (!IsEmpty(year) && !TakeYear(file, year, found)) found.cutTables.push_back(year.offset);
  }
  found.isWhole = found.cutTables.empty();
  return found;
}

std::optional<std::string> WriteFrame(const Header& header, const std::vector<DayBlock>& days) {
  std::vector<frame::DayBlock> blocks;
  blocks.reserve(days.size());
  for (const DayBlock& day : days) {
    blocks.push_back({static_cast<std::int16_t>(YearOfKey(day.key) - 1900),
                      static_cast<std::uint16_t>(DayOfKey(day.key)), day.bytes.size()});
  }
  return frame::WriteFile(
      header, blocks, [&](ByteWriter& out, std::size_t index) { out.Bytes(days[index].bytes); });
}

}  // namespace pw::calltask
