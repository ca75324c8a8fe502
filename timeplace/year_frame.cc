#include "timeplace/year_frame.h"

#include <algorithm>
#include <iterator>

#include "base/text.h"

namespace pw::frame {
namespace {

using Days = std::vector<DayBlock>::const_iterator;

// A year's entry and its blocks.
struct Year {
  YearEntry entry;
  Days begin;
  Days end;
};

struct Layout {
  std::vector<Year> years;
  std::size_t size = kFirstTable;  // of the file
};

// Nothing if offsets don't reach to the end.
std::optional<Layout> PlaceYears(const std::vector<DayBlock>& days) {
  Layout layout;
  for (auto day = days.begin(); day != days.end(); ++day) {
    if (layout.years.empty() || layout.years.back().entry.year != day->year) {
      if (layout.years.size() == kYearEntries) break;
      const auto offset = static_cast<std::uint32_t>(layout.size);
      layout.years.push_back({{day->year, offset}, day, day});
      layout.size += kYearTableSize;
    }
    layout.years.back().end = day + 1;
    layout.size += day->size;
    if (layout.size > UINT32_MAX) return std::nullopt;
  }
  return layout;
}

void EncodeTable(ByteWriter& out, const Year& year) {
  auto position = static_cast<std::uint32_t>(year.entry.offset + kYearTableSize);
  Days next = year.begin;
  for (std::size_t day = 0; day < kDayEntries; ++day) {
    const bool hasBlock = next != year.end && next->day == day;
    const auto size = static_cast<std::uint32_t>(hasBlock ? next->size : 0);
    EncodeDayEntry(out, {position, size});
    position += size;
    if (hasBlock) ++next;
  }
}

}  // namespace

std::string_view MagicOf(const Header& header) {
  return UpToZero({header.data(), header.size()});
}

void SetMagic(Header& header, std::string_view magic) {
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

std::optional<std::string_view> BlockOf(std::string_view file, const DayEntry& entry) {
  if (entry.offset > file.size() || entry.size > file.size() - entry.offset) return std::nullopt;
  return file.substr(entry.offset, entry.size);
}

bool TakenBlocks::Take(std::size_t offset, std::size_t size) {
  const auto next = ends.lower_bound(offset);
  if (next != ends.end() && next->first < offset + size) return false;
  if (next != ends.begin() && std::prev(next)->second > offset) return false;
  ends.emplace_hint(next, offset, offset + size);
  return true;
}

std::optional<std::string> WriteFile(const Header& header, const std::vector<DayBlock>& days,
                                     const EncodeBlock& encode) {
  const auto layout = PlaceYears(days);
  if (!layout) return std::nullopt;
  ByteWriter out;
  out.Reserve(layout->size);
  out.Bytes(header);
  for (const Year& year : layout->years) EncodeYearEntry(out, year.entry);
  out.Zeros((kYearEntries - layout->years.size()) * kYearEntrySize);
  for (const Year& year : layout->years) {
    EncodeTable(out, year);
    for (Days day = year.begin; day != year.end; ++day) {
      encode(out, static_cast<std::size_t>(day - days.begin()));
    }
  }
  return out.Release();
}

std::string WriteEmptyFile(const Header& header) {
  return *WriteFile(header, {}, [](ByteWriter& /*out*/, std::size_t /*index*/) {});
}

}  // namespace pw::frame
