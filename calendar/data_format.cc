#include "calendar/data_format.h"

#include <algorithm>
#include <iterator>

#include "base/text.h"

namespace pw::datafile {
namespace {

constexpr std::string_view kMagic50 = "WMWDATA50";
constexpr std::string_view kMagic35 = "XQXDATA35";

// Of the texts of version 35. The organiser's limits count a zero, which that of a special day has
// no room for.
constexpr std::size_t kLongestSpecialDay35 = 49;
constexpr std::size_t kLongestMultiDay35 = 48;

template <class Day>
void DecodeKey(ByteReader& in, Day& day) {
  day.created = in.I32();
  day.id = in.U32();
  day.stamp = in.I32();
}

template <class Day>
void EncodeKey(ByteWriter& out, const Day& day) {
  out.I32(day.created);
  out.U32(day.id);
  out.I32(day.stamp);
}

std::string_view ViewOf(const Subject& subject) {
  return {subject.data(), subject.size()};
}

// What version 35 keeps of a text.
Subject Shortened(const Subject& subject, std::size_t limit) {
  const std::string_view text = UpToZero(ViewOf(subject)).substr(0, limit);
  Subject result{};
  std::copy(text.begin(), text.end(), result.begin());
  return result;
}

// The word that four bytes are in a file.
std::int32_t WordOf(std::uint32_t byte0, std::uint32_t byte1, std::uint32_t byte2,
                    std::uint32_t byte3) {
  return static_cast<std::int32_t>(byte0 | byte1 << 8 | byte2 << 16 | byte3 << 24);
}

template <class Day>
std::string KeyText(const Day& day) {
  return FormatLong(day.created) + '+' + FormatLong(static_cast<std::int32_t>(day.id));
}

struct DaysAndSpans {
  std::vector<WMSpecialDay> days;
  std::vector<WMMultiDay> spans;
};

// As a data file does that loads them.
DaysAndSpans TakenIn(const std::vector<Record>& records) {
  DaysAndSpans taken;
  for (const Record& record : records) {
    if (const auto* const day = std::get_if<WMSpecialDay>(&record)) {
      taken.days.push_back(*day);
    } else if (const auto& span = std::get<WMMultiDay>(record); IsInRange(span)) {
      taken.spans.push_back(span);
    }
  }
  return taken;
}

// What is misplaced may come back in part, and so in another order.
std::vector<std::string> SortedBytes(const DaysAndSpans& records) {
  std::vector<std::string> all;
  all.reserve(records.days.size() + records.spans.size());
  const auto add = [&](char kind, const auto& record) {
    ByteWriter out;
    out.U8(static_cast<std::uint8_t>(kind));
    EncodeRecord(out, record, FormatVersion::k50);
    all.push_back(out.Release());
  };
  for (const WMSpecialDay& day : records.days) add('d', day);
  for (const WMMultiDay& span : records.spans) add('s', span);
  std::sort(all.begin(), all.end());
  return all;
}

// Reads the sections that the table names.
class SectionReader {
 public:
  SectionReader(std::string_view bytes, File& file)
      : bytes(bytes), file(file), bytesLeft(bytes.size() - kFirstSection) {}

  void ReadAll() {
    for (std::size_t i = 0; i < kSections; ++i) {
      ReadEntry(file.table[i], SectionEntryOffset(i));
    }
  }

 private:
  void ReadEntry(const WMDataSection& section, std::size_t entryOffset) {
    const bool isKnown = section.tag == kSpecialDayTag || section.tag == kMultiDayTag;
    if (isKnown && FindSection(file.table, section.tag) == &section) {
      if (section.count > 0) ReadSection(section, entryOffset);
      return;
    }
    if (isKnown) {
      Report("one section of each kind, and this is another", entryOffset, section.count);
    } else if (section.tag != kFreeTag) {
      Report("special days (0x32DB), multi-day spans (0x32DC) or a free entry (0)", entryOffset,
             section.count);
    }
    position += section.bytes;  // of what isn't read no more is known
  }

  void ReadSection(const WMDataSection& section, std::size_t entryOffset) {
    const std::size_t offset =
        std::max(static_cast<std::size_t>(std::max(section.offset, 0)), kFirstSection);
    if (offset != position) {
      Report("a section that begins where the one before it ends", entryOffset + 6, 0);
    }
    ByteReader in(bytes);
    in.Seek(offset);
    const std::size_t size = RecordSize(*file.version);
    const std::size_t whole =
        std::min<std::size_t>(section.count, std::min(in.Remaining(), bytesLeft) / size);
    bytesLeft -= whole * size;
    for (std::size_t i = 0; i < whole; ++i) ReadRecord(in, section.tag);
    position = offset + section.count * size;
    if (whole < section.count) {
      Report("as many records as the section table says", in.Position(), section.count - whole);
    }
  }

  void ReadRecord(ByteReader& in, std::int16_t tag) {
    if (tag == kSpecialDayTag) {
      file.records.emplace_back(DecodeSpecialDay(in, *file.version));
      return;
    }
    const std::size_t start = in.Position() + (file.version == FormatVersion::k50 ? kKeySize : 0);
    const WMMultiDay span = DecodeMultiDay(in, *file.version);
    if (!IsInRange(span)) Report("a first and a last day from 300000000 to 2000000000", start, 1);
    file.records.emplace_back(span);
  }

  void Report(const char* expected, std::size_t offset, std::size_t recordsLost) {
    file.damage.push_back({expected, offset, recordsLost});
  }

  std::string_view bytes;
  File& file;
  std::size_t position = kFirstSection;  // where the entry looked at last ends by the table
  std::size_t bytesLeft;                 // no more than the file has, if sections overlap
};

}  // namespace

std::optional<FormatVersion> VersionOf(const Header& header) {
  const std::string_view magic = UpToZero({header.data(), kMagicSize - 1});
  if (magic == kMagic50) return FormatVersion::k50;
  if (magic == kMagic35) return FormatVersion::k35;
  return std::nullopt;
}

void SetMagic(Header& header, FormatVersion version) {
  const std::string_view magic = version == FormatVersion::k50 ? kMagic50 : kMagic35;
  *std::copy(magic.begin(), magic.end(), header.begin()) = '\0';
}

Subject MakeSubject(std::string_view text) {
  Subject subject{};
  const std::string_view kept = text.substr(0, kLongestSubject);
  std::copy(kept.begin(), kept.end(), subject.begin());
  return subject;
}

std::string_view SubjectText(const Subject& subject) {
  return UpToZero(ViewOf(subject).substr(0, kLongestSubject + 1));
}

std::string_view WholeSubjectText(const Subject& subject) {
  return UpToZero(ViewOf(subject));
}

WMDataSection DecodeSection(ByteReader& in) {
  WMDataSection section;
  section.tag = static_cast<std::int16_t>(in.U16());
  section.count = in.U16();
  section.bytes = in.U16();
  section.offset = in.I32();
  return section;
}

void EncodeSection(ByteWriter& out, const WMDataSection& section) {
  out.U16(static_cast<std::uint16_t>(section.tag));
  out.U16(section.count);
  out.U16(section.bytes);
  out.I32(section.offset);
}

SectionTable NewTable() {
  SectionTable table;
  table.front().tag = kSpecialDayTag;
  table.front().offset = kFirstSection;
  return table;
}

std::size_t SectionEntryOffset(std::size_t index) {
  return kHeaderSize + index * kSectionSize;
}

WMDataSection* FindSection(SectionTable& table, std::int16_t tag) {
  const auto found = std::find_if(table.begin(), table.end(),
                                  [&](const WMDataSection& each) { return each.tag == tag; });
  return found == table.end() ? nullptr : &*found;
}

void PlaceSections(SectionTable& table, std::size_t specialDays, std::size_t multiDays) {
  const auto count = [&](std::int16_t tag, std::size_t records) {
    WMDataSection* const section = FindSection(table, tag);
    if (section == nullptr) return;
    section->count = static_cast<std::uint16_t>(records);
    section->bytes = static_cast<std::uint16_t>(records * kRecordSize50);
  };
  count(kSpecialDayTag, specialDays);
  count(kMultiDayTag, multiDays);
  std::int32_t offset = kFirstSection;
  for (WMDataSection& section : table) {
    section.offset = offset;
    offset += section.bytes;
  }
}

std::size_t RecordSize(FormatVersion version) {
  return version == FormatVersion::k50 ? kRecordSize50 : kRecordSize35;
}

WMSpecialDay DecodeSpecialDay(ByteReader& in, FormatVersion version) {
  WMSpecialDay day;
  if (version == FormatVersion::k50) DecodeKey(in, day);
  day.byDate = in.U8();
  day.year = in.U8();
  day.month = in.U8();
  day.day = in.U8();
  day.week = in.U8();
  day.weekday = in.U8();
  day.alarm = in.U16();
  day.alarmDays = in.U8();
  day.spare = in.U8();
  in.TakeInto(day.subject);
  if (version == FormatVersion::k35) day.subject = Shortened(day.subject, kLongestSpecialDay35);
  return day;
}

void EncodeRecord(ByteWriter& out, const WMSpecialDay& day, FormatVersion version) {
  if (version == FormatVersion::k50) EncodeKey(out, day);
  out.U8(day.byDate);
  out.U8(day.year);
  out.U8(day.month);
  out.U8(day.day);
  out.U8(day.week);
  out.U8(day.weekday);
  out.U16(day.alarm);
  out.U8(day.alarmDays);
  out.U8(day.spare);
  out.Bytes(version == FormatVersion::k50 ? day.subject
                                          : Shortened(day.subject, kLongestSpecialDay35));
}

WMMultiDay DecodeMultiDay(ByteReader& in, FormatVersion version) {
  WMMultiDay span;
  if (version == FormatVersion::k50) DecodeKey(in, span);
  span.start = in.I32();
  span.end = in.I32();
  span.flag = in.U8();
  span.kind = in.U8();
  in.TakeInto(span.subject);
  if (version == FormatVersion::k35) span.subject = Shortened(span.subject, kLongestMultiDay35);
  return span;
}

void EncodeRecord(ByteWriter& out, const WMMultiDay& span, FormatVersion version) {
  if (version == FormatVersion::k50) EncodeKey(out, span);
  out.I32(span.start);
  out.I32(span.end);
  out.U8(span.flag);
  out.U8(span.kind);
  out.Bytes(version == FormatVersion::k50 ? span.subject
                                          : Shortened(span.subject, kLongestMultiDay35));
}

bool IsInRange(const WMMultiDay& span) {
  const auto isInRange = [](std::int32_t moment) {
    return moment >= kFirstMoment && moment <= kLastMoment;
  };
  return isInRange(span.start) && isInRange(span.end);
}

std::string IdText(const WMSpecialDay& day, FormatVersion version) {
  std::string text = "SpecialDay:";
  if (version == FormatVersion::k50) return text + KeyText(day);
  text += SubjectText(day.subject);
  const auto words = WordsOf(day);
  return text + '+' + FormatLong(words[0]) + '+' + FormatLong(words[1]);
}

std::vector<std::int32_t> WordsOf(const WMSpecialDay& day) {
  return {WordOf(day.byDate, day.year, day.month, day.day),
          WordOf(day.week, day.weekday, day.alarm & 0xFF, day.alarm >> 8),
          WordOf(day.alarmDays, day.spare, 0, 0)};
}

std::string IdText(const WMMultiDay& span, FormatVersion version) {
  std::string text = "MultiDay:";
  if (version == FormatVersion::k50) return text + KeyText(span);
  text += SubjectText(span.subject);
  return text + '+' + FormatLong(span.start);
}

File DecodeFile(std::string_view bytes) {
  File file;
  ByteReader in(bytes);
  in.TakeInto(file.header);
  file.version = VersionOf(file.header);
  if (!file.version) {
    file.damage.push_back({"\"WMWDATA50\" or \"XQXDATA35\"", 0, 0});
    return file;
  }
  if (in.Remaining() < kTableSize) {
    file.damage.push_back({"a header and a section table, 126 bytes", bytes.size(), 0});
    return file;
  }
  for (WMDataSection& section : file.table) section = DecodeSection(in);
  SectionReader(bytes, file).ReadAll();
  return file;
}

std::string EncodeFile(const Header& header, const SectionTable& table, FormatVersion version,
                       const std::vector<WMSpecialDay>& specialDays,
                       const std::vector<WMMultiDay>& multiDays) {
  ByteWriter out;
  out.Reserve(kFirstSection + (specialDays.size() + multiDays.size()) * RecordSize(version));
  out.Bytes(header);
  for (const WMDataSection& section : table) EncodeSection(out, section);

  const auto writeOnce = [&](bool& isWritten, const auto& records) {
    if (isWritten) return;
    for (const auto& record : records) EncodeRecord(out, record, version);
    isWritten = true;
  };
  bool hasSpecialDays = false;
  bool hasMultiDays = false;
  for (const WMDataSection& section : table) {
    if (section.tag == kSpecialDayTag) writeOnce(hasSpecialDays, specialDays);
    if (section.tag == kMultiDayTag) writeOnce(hasMultiDays, multiDays);
  }
  return out.Release();
}

std::size_t LostAtSave(const File& file, FormatVersion version) {
  const DaysAndSpans held = TakenIn(file.records);
  Header header = file.header;
  SetMagic(header, version);
  SectionTable table = file.table;
  PlaceSections(table, held.days.size(), held.spans.size());
  const File saved = DecodeFile(EncodeFile(header, table, version, held.days, held.spans));

  const auto before = SortedBytes(held);
  const auto after = SortedBytes(TakenIn(saved.records));
  std::vector<std::string> lost;
  std::set_difference(before.begin(), before.end(), after.begin(), after.end(),
                      std::back_inserter(lost));
  return lost.size();
}

std::string EncodeEmptyFile(FormatVersion version) {
  Header header{};
  SetMagic(header, version);
  return EncodeFile(header, NewTable(), version, {}, {});
}

}  // namespace pw::datafile
