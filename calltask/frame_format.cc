#include "calltask/frame_format.h"

#include <algorithm>

#include "base/text.h"

namespace pw::calltask {
namespace {

constexpr std::int32_t kKeysOfYear = kDayEntries;
constexpr std::int32_t kFirstYearSince1900 = kFirstYear - 1900;

// Adds the blocks that a year's table names. False if the table isn't whole.
bool TakeYear(std::string_view file, const YearEntry& year, Frame& frame) {
  ByteReader in(file);
  in.Seek(year.offset);
  if (in.Remaining() < kYearTableSize) return false;
  const std::uint16_t first = FirstKeyOf(year.year);
  for (std::size_t day = 0; day < kDayEntries; ++day) {
    const DayEntry entry = DecodeDayEntry(in);
    if (entry.size == 0) continue;
    const bool isInFile = entry.offset <= file.size() && entry.size <= file.size() - entry.offset;
    if (!isInFile) {
      ++frame.blocksOutside;
      continue;
    }
    frame.days.push_back(
        {static_cast<std::uint16_t>(first + day), file.substr(entry.offset, entry.size)});
  }
  return true;
}

// The blocks of one year, and where its table stands.
struct Year {
  YearEntry entry;
  std::vector<DayBlock> days;
};

// Nothing if offsets don't reach to the end.
std::optional<std::vector<Year>> PlaceYears(const std::vector<DayBlock>& days) {
  std::vector<Year> years;
  std::uint64_t end = kFirstTable;
  for (const DayBlock& day : days) {
    const auto since1900 = static_cast<std::int16_t>(YearOfKey(day.key) - 1900);
    if (years.empty() || years.back().entry.year != since1900) {
      if (years.size() == kYearEntries) break;
      years.push_back({{since1900, static_cast<std::uint32_t>(end)}, {}});
      end += kYearTableSize;
    }
    years.back().days.push_back(day);
    end += day.bytes.size();
    if (end > UINT32_MAX) return std::nullopt;
  }
  return years;
}

std::size_t SizeOf(const std::vector<Year>& years) {
  std::size_t size = kFirstTable + years.size() * kYearTableSize;
  for (const Year& year : years) {
    for (const DayBlock& day : year.days) size += day.bytes.size();
  }
  return size;
}

void EncodeYear(ByteWriter& out, const Year& year) {
  auto position = static_cast<std::uint32_t>(year.entry.offset + kYearTableSize);
  auto next = year.days.begin();
  for (std::size_t day = 0; day < kDayEntries; ++day) {
    const bool hasBlock =
        next != year.days.end() && DayOfKey(next->key) == static_cast<std::int32_t>(day);
    const auto size = static_cast<std::uint32_t>(hasBlock ? next->bytes.size() : 0);
    EncodeDayEntry(out, {position, size});
    position += size;
    if (hasBlock) ++next;
  }
  for (const DayBlock& day : year.days) out.Bytes(day.bytes);
}

}  // namespace

std::optional<FormatVersion> VersionOf(const Header& header, const Magics& magics) {
  const std::string_view magic = UpToZero({header.data(), header.size()});
  if (magic == magics.version50) return FormatVersion::k50;
  if (magic == magics.version30) return FormatVersion::k30;
  return std::nullopt;
}

void SetMagic(Header& header, const Magics& magics, FormatVersion version) {
  const std::string_view magic =
      version == FormatVersion::k50 ? magics.version50 : magics.version30;
  *std::copy(magic.begin(), magic.end(), header.begin()) = '\0';
}

YearEntry DecodeYearEntry(ByteReader& in) {
  YearEntry entry;
  entry.year = static_cast<std::int16_t>(in.U16());
  entry.offset = in.U32();
  return entry;
}

void EncodeYearEntry(ByteWriter& out, const YearEntry& entry) {
  out.U16(static_cast<std::uint16_t>(entry.year));
  out.U32(entry.offset);
}

DayEntry DecodeDayEntry(ByteReader& in) {
  DayEntry entry;
  entry.offset = in.U32();
  in.Take(4 + 1);
  entry.size = in.U32();
  in.Take(4);
  return entry;
}

void EncodeDayEntry(ByteWriter& out, const DayEntry& entry) {
  out.U32(entry.offset);
  out.Zeros(4 + 1);
  out.U32(entry.size);
  out.Zeros(4);
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
  Frame frame;
  ByteReader in(file);
  const std::string_view header = in.Take(kHeaderSize);
  frame.hasHeader = !in.Short();
  if (!frame.hasHeader) return frame;
  std::copy(header.begin(), header.end(), frame.header.begin());
  frame.isWhole = in.Remaining() >= kYearIndexSize;
  if (!frame.isWhole) return frame;

  for (std::size_t i = 0; i < kYearEntries; ++i) {
    const YearEntry year = DecodeYearEntry(in);
    if (!year.IsEmpty() && !TakeYear(file, year, frame)) frame.isWhole = false;
  }
  return frame;
}

std::optional<std::string> WriteFrame(const Header& header, const std::vector<DayBlock>& days) {
  const auto years = PlaceYears(days);
  if (!years) return std::nullopt;
  ByteWriter out;
  out.Reserve(SizeOf(*years));
  out.Bytes({header.data(), header.size()});
  for (const Year& year : *years) EncodeYearEntry(out, year.entry);
  out.Zeros((kYearEntries - years->size()) * kYearEntrySize);
  for (const Year& year : *years) EncodeYear(out, year);
  return out.Release();
}

}  // namespace pw::calltask
