#include "calendar/recurring_format.h"

#include <algorithm>

#include "base/text.h"
#include "timeplace/date.h"

namespace pw::recurring {
namespace {

constexpr std::string_view kMagic30 = "XQXREC30";
constexpr std::string_view kMagic50 = "WMWREC50";

constexpr char kSubjectEnd = '\x7F';
constexpr char kRecordEnd = '\x09';
constexpr std::array<char, 2> kSubjectEnds = {kSubjectEnd, kRecordEnd};

// Keeps the first damage of a record.
void Note(std::optional<Damage>& damage, const char* expected, std::size_t offset) {
  if (!damage) damage = Damage{expected, offset};
}

void DecodeRange(ByteReader& in, WMRecurrenceRule& rule) {
  rule.firstDay = in.I32();
  rule.lastDay = in.I32();
}

void EncodeRange(ByteWriter& out, const WMRecurrenceRule& rule) {
  out.I32(rule.firstDay);
  out.I32(rule.lastDay);
}

void DecodePattern(ByteReader& in, WMRecurrenceRule& rule) {
  rule.startSlot = in.U16();
  rule.patternKind = in.U16();
  rule.interval = static_cast<std::int16_t>(in.U16());
  rule.weekMask = in.U8();
  rule.dayMask = in.U32();
  rule.weekdayMask = in.U8();
  rule.reserved3 = in.U16();
}

void EncodePattern(ByteWriter& out, const WMRecurrenceRule& rule) {
  out.U16(rule.startSlot);
  out.U16(rule.patternKind);
  out.U16(static_cast<std::uint16_t>(rule.interval));
  out.U8(rule.weekMask);
  out.U32(rule.dayMask);
  out.U8(rule.weekdayMask);
  out.U16(rule.reserved3);
}

void DecodeIdentity(ByteReader& in, Record& record) {
  record.firstStart = in.I32();
  record.firstEnd = in.I32();
  record.zone = in.I32();
  record.key = in.I32();
  record.modified = in.I32();
  record.reserved1 = in.I32();
  record.reserved2 = in.I32();
}

void EncodeIdentity(ByteWriter& out, const Record& record) {
  out.I32(record.firstStart);
  out.I32(record.firstEnd);
  out.I32(record.zone);
  out.I32(record.key);
  out.I32(record.modified);
  out.I32(record.reserved1);
  out.I32(record.reserved2);
}

void DecodeExceptions(ByteReader& in, DecodedRecord& decoded) {
  const std::size_t position = in.Position();
  const std::int32_t count = in.I32();
  if (count < 0) Note(decoded.damage, "a count of exceptions that isn't negative", position);
  const auto counted = static_cast<std::size_t>(std::max(count, 0));
  const std::size_t whole = std::min(counted, in.Remaining() / kExceptionSize);
  decoded.record.exceptions.reserve(whole);
  for (std::size_t i = 0; i < whole; ++i) {
    decoded.record.exceptions.push_back(DecodeException(in));
  }
  if (whole == counted) return;
  Note(decoded.damage, "as many exceptions as are counted", in.Position());
  in.Take(in.Remaining());
}

void EncodeExceptions(ByteWriter& out, const Record& record) {
  out.I32(static_cast<std::int32_t>(record.exceptions.size()));
  for (const WMRecurringException& exception : record.exceptions) EncodeException(out, exception);
}

void DecodeWords(ByteReader& in, WMEventDetail& detail) {
  detail.timeWord = in.U32();
  detail.flagWord = in.U32();
}

void EncodeWords(ByteWriter& out, const WMEventDetail& detail) {
  out.U32(detail.timeWord);
  out.U32(detail.flagWord);
}

// The texts at the front of what is left, which they leave.
void DecodeTexts(ByteReader& in, std::string_view bytes, DecodedRecord& decoded) {
  const std::string_view rest = bytes.substr(in.Position());
  const std::size_t subjectEnd =
      std::min(rest.find_first_of({kSubjectEnds.data(), kSubjectEnds.size()}), rest.size());
  if (rest.substr(subjectEnd, 1) != std::string_view(&kSubjectEnd, 1)) {
    Note(decoded.damage, "0x7F behind the subject", in.Position() + subjectEnd);
  }
  decoded.record.detail.subject = calendar::TextOfStored(in.Take(subjectEnd));
  if (subjectEnd != 0 && in.Remaining() != 0) in.Take(1);

  const std::string_view notesAndMore = bytes.substr(in.Position());
  const std::size_t notesEnd = std::min(notesAndMore.find(kRecordEnd), notesAndMore.size());
  decoded.record.detail.notes = calendar::TextOfStored(in.Take(notesEnd));
  if (in.Remaining() == 0) Note(decoded.damage, "0x09 behind the notes", in.Position());
  if (in.Remaining() != 0) in.Take(1);
}

void EncodeTexts(ByteWriter& out, const WMEventDetail& detail) {
  out.Bytes(calendar::StoredText(detail.subject));
  out.U8(kSubjectEnd);
  out.Bytes(calendar::StoredText(detail.notes));
  out.U8(kRecordEnd);
}

// By the fields alone, without any zone.
void SetFirstTimes(Record& record) {
  WMBrokenTime start = BrokenTimeOf(record.rule.firstDay);
  start.hour = record.detail.StartHour();
  start.min = record.detail.StartMinute();
  start.sec = 0;
  record.firstStart = NormalSeconds(start);
  record.firstEnd = record.firstStart;  // the organiser takes the start for both
}

// A record with zeros for all fields.
Record ZeroRecord() {
  Record record;
  record.modified = 0;
  record.detail.timeWord = 0;
  record.detail.flagWord = 0;
  return record;
}

void DecodeFields30(ByteReader& in, std::string_view bytes, DecodedRecord& decoded) {
  DecodeRange(in, decoded.record.rule);
  DecodePattern(in, decoded.record.rule);
  DecodeWords(in, decoded.record.detail);
  DecodeTexts(in, bytes, decoded);
}

void DecodeFields50(ByteReader& in, std::string_view bytes, DecodedRecord& decoded) {
  std::string padded;
  if (bytes.size() < kFixed50) {
    Note(decoded.damage, "a record of 68 bytes or more", bytes.size());
    padded = bytes;
    padded.resize(kFixed50);
  }
  ByteReader fields(padded.empty() ? bytes : padded);
  DecodeRange(fields, decoded.record.rule);
  DecodeIdentity(fields, decoded.record);
  DecodePattern(fields, decoded.record.rule);
  DecodeExceptions(fields, decoded);
  DecodeWords(fields, decoded.record.detail);
  in.Seek(fields.Position());
  DecodeTexts(in, bytes, decoded);
  if (in.Remaining() < kSlackSize) Note(decoded.damage, "four bytes behind 0x09", in.Position());
  in.TakeInto(decoded.record.slack);
  SetFirstTimes(decoded.record);
}

void EncodeFields30(ByteWriter& out, const Record& record) {
  EncodeRange(out, record.rule);
  EncodePattern(out, record.rule);
  EncodeWords(out, record.detail);
  EncodeTexts(out, record.detail);
}

void EncodeFields50(ByteWriter& out, const Record& record) {
  EncodeRange(out, record.rule);
  EncodeIdentity(out, record);
  EncodePattern(out, record.rule);
  EncodeExceptions(out, record);
  EncodeWords(out, record.detail);
  EncodeTexts(out, record.detail);
  out.Bytes(record.slack);
}

// Adds the record that an entry names. False if it can't be read.
bool TakeRecord(std::string_view file, const IndexEntry& entry, std::size_t& bytesLeft,
                Frame& frame) {
  const std::size_t behind = entry.offset <= file.size() ? file.size() - entry.offset : 0;
  if (entry.length > behind) {
    frame.damages.push_back({"a record within the file", entry.offset});
    return false;
  }
  if (entry.length > bytesLeft) {
    frame.damages.push_back({"a record that overlaps no other", entry.offset});
    return false;
  }
  bytesLeft -= entry.length;
  const std::string_view bytes =
      entry.length == 0 ? std::string_view() : file.substr(entry.offset, entry.length);
  frame.records.push_back({entry.offset, bytes});
  return true;
}

void TakeRecords(std::string_view file, ByteReader in, std::size_t count, Frame& frame) {
  std::size_t bytesLeft = file.size();
  for (std::size_t i = 0; i < count && frame.hasAllRecords; ++i) {
    const std::size_t position = in.Position();
    const IndexEntry entry = DecodeIndexEntry(in);
    if (entry.tag != kRecordTag) {
      frame.damages.push_back({"an index entry with the tag 0x32C9", position});
      continue;
    }
    frame.hasAllRecords = TakeRecord(file, entry, bytesLeft, frame);
  }
}

}  // namespace

Header DecodeHeader(ByteReader& in) {
  Header header;
  in.TakeInto(header.text);
  header.count = static_cast<std::int16_t>(in.U16());
  return header;
}

void EncodeHeader(ByteWriter& out, const Header& header) {
  out.Bytes(header.text);
  out.U16(static_cast<std::uint16_t>(header.count));
}

FormatVersion VersionOf(const Header& header) {
  const std::string_view magic = UpToZero({header.text.data(), header.text.size()});
  return magic == kMagic50 ? FormatVersion::k50 : FormatVersion::k30;
}

void SetMagic(Header& header, FormatVersion version) {
  const std::string_view magic = version == FormatVersion::k50 ? kMagic50 : kMagic30;
  *std::copy(magic.begin(), magic.end(), header.text.begin()) = '\0';
}

IndexEntry DecodeIndexEntry(ByteReader& in) {
  IndexEntry entry;
  entry.tag = in.U16();
  entry.length = in.U16();
  entry.offset = in.U32();
  return entry;
}

void EncodeIndexEntry(ByteWriter& out, const IndexEntry& entry) {
  out.U16(entry.tag);
  out.U16(entry.length);
  out.U32(entry.offset);
}

WMRecurringException DecodeException(ByteReader& in) {
  WMRecurringException exception;
  exception.itemCreated = in.U32();
  exception.itemId = in.U32();
  exception.deleted = in.I32() != 0;
  exception.date = in.I32();
  exception.stamp = in.I32();
  return exception;
}

void EncodeException(ByteWriter& out, const WMRecurringException& exception) {
  out.U32(exception.itemCreated);
  out.U32(exception.itemId);
  out.I32(exception.deleted ? 1 : 0);
  out.I32(exception.date);
  out.I32(exception.stamp);
}

std::size_t RecordSize(FormatVersion version, const Record& record) {
  const std::size_t texts = record.detail.subject.size() + record.detail.notes.size();
  if (version == FormatVersion::k30) return kFixed30 + texts;
  return kFixed50 + kExceptionSize * record.exceptions.size() + texts;
}

bool IsNoRecord(std::string_view bytes) {
  return bytes.size() < kShortestRecord || bytes.front() == kRecordEnd;
}

DecodedRecord DecodeRecord(FormatVersion version, std::string_view bytes) {
  DecodedRecord decoded;
  if (bytes.size() < kShortestRecord) {
    decoded.record = ZeroRecord();
    Note(decoded.damage, "a record of 30 bytes or more", bytes.size());
    return decoded;
  }
  if (bytes.front() == kRecordEnd) {
    Note(decoded.damage, "another first byte than 0x09", 0);
    return decoded;
  }
  decoded.record = ZeroRecord();
  ByteReader in(bytes);
  if (version == FormatVersion::k30) {
    DecodeFields30(in, bytes, decoded);
  } else {
    DecodeFields50(in, bytes, decoded);
  }
  if (in.Remaining() != 0) Note(decoded.damage, "the end of the record", in.Position());
  return decoded;
}

void EncodeRecord(ByteWriter& out, FormatVersion version, const Record& record) {
  const std::size_t size = RecordSize(version, record);
  if (size > kLongestRecord) {
    out.Zeros(static_cast<std::uint16_t>(size));
  } else if (version == FormatVersion::k30) {
    EncodeFields30(out, record);
  } else {
    EncodeFields50(out, record);
  }
}

Frame ReadFrame(std::string_view file) {
  Frame frame;
  ByteReader in(file);
  frame.header = DecodeHeader(in);
  frame.hasHeader = !in.Short();
  if (!frame.hasHeader) {
    frame.damages.push_back({"a header of 28 bytes", file.size()});
    return frame;
  }
  frame.version = VersionOf(frame.header);
  Header known = frame.header;
  SetMagic(known, frame.version);
  if (known.text != frame.header.text) {
    frame.damages.push_back({"the magic WMWREC50 or XQXREC30", 0});
  }
  if (frame.header.count < 0) {
    frame.damages.push_back({"a count of records that isn't negative", kHeaderTextSize});
    return frame;
  }
  const auto count = static_cast<std::size_t>(frame.header.count);
  if (in.Remaining() < count * kIndexEntrySize) {
    frame.damages.push_back({"an index entry for each record", file.size()});
    return frame;
  }
  TakeRecords(file, in, count, frame);
  return frame;
}

std::string EncodeBody(FormatVersion version, const std::vector<const Record*>& records) {
  ByteWriter out;
  std::size_t size = kIndexEntrySize * records.size();
  for (const Record* record : records) {
    size += static_cast<std::uint16_t>(RecordSize(version, *record));
  }
  out.Reserve(size);
  auto offset = static_cast<std::uint32_t>(kHeaderSize + kIndexEntrySize * records.size());
  for (const Record* record : records) {
    const auto length = static_cast<std::uint16_t>(RecordSize(version, *record));
    EncodeIndexEntry(out, {kRecordTag, length, offset});
    offset += length;
  }
  for (const Record* record : records) EncodeRecord(out, version, *record);
  return out.Release();
}

}  // namespace pw::recurring
