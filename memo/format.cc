#include "memo/format.h"

#include <algorithm>

#include "base/text.h"

namespace pw::memo {
namespace {

std::string_view Part(std::string_view contents, std::uint64_t offset, std::uint32_t size) {
  return contents.substr(std::min<std::uint64_t>(offset, contents.size()), size);
}

}  // namespace

Section DecodeSection(ByteReader& in) {
  Section section;
  section.name = UpToZero(in.Take(kNameSize));
  section.noteCount = in.I32();
  section.flag = in.U8();
  section.id = in.U16();
  return section;
}

void EncodeSection(ByteWriter& out, const Section& section) {
  out.Padded(std::string_view(section.name).substr(0, kLongestName), kNameSize);
  out.I32(section.noteCount);
  out.U8(section.flag);
  out.U16(section.id);
}

std::optional<std::vector<Section>> DecodeSections(std::string_view file) {
  ByteReader in(file);
  const auto count = static_cast<std::int16_t>(in.U16());
  if (in.Short() || count < 1) return std::nullopt;
  if (in.Remaining() < static_cast<std::size_t>(count) * kSectionSize) return std::nullopt;
  std::vector<Section> sections;
  for (std::int16_t i = 0; i < count; ++i) sections.push_back(DecodeSection(in));
  return sections;
}

std::string EncodeSections(const std::vector<Section>& sections) {
  ByteWriter out;
  if (sections.empty()) return out.Release();
  out.U16(static_cast<std::uint16_t>(sections.size()));
  for (const Section& section : sections) EncodeSection(out, section);
  return out.Release();
}

NoteHeader DecodeNoteHeader(ByteReader& in) {
  NoteHeader header;
  header.first = in.U8();
  header.second = in.U8();
  header.sectionId = in.U16();
  header.id = in.I32();
  header.subjectOffset = in.U32();
  header.subjectSize = in.U32();
  header.bodySize = in.U32();
  header.lastChange = in.I32();
  in.TakeInto(header.unknown);
  return header;
}

void EncodeNoteHeader(ByteWriter& out, const NoteHeader& header) {
  out.U8(header.first);
  out.U8(header.second);
  out.U16(header.sectionId);
  out.I32(header.id);
  out.U32(header.subjectOffset);
  out.U32(header.subjectSize);
  out.U32(header.bodySize);
  out.I32(header.lastChange);
  out.Bytes(header.unknown);
}

std::int32_t DecodeHeaderFileStart(ByteReader& in) {
  in.Take(kMagic.size());
  return in.I32();
}

void EncodeHeaderFileStart(ByteWriter& out, std::int32_t noteCount) {
  out.Bytes(kMagic);
  out.I32(noteCount);
}

std::string EncodeEmptyHeaderFile() {
  ByteWriter out;
  EncodeHeaderFileStart(out, 0);
  return out.Release();
}

std::vector<BinderPart> NewBinder(const std::vector<std::string>& sectionNames) {
  std::vector<Section> sections;
  for (const std::string& name : sectionNames) {
    Section section;
    section.name = name;
    section.id = static_cast<std::uint16_t>(sections.size());
    sections.push_back(std::move(section));
  }
  return {{kSectionFile, EncodeSections(sections)},
          {kHeaderFile, EncodeEmptyHeaderFile()},
          {kContentFile, ""}};
}

std::optional<std::vector<NoteHeader>> DecodeNoteHeaders(std::string_view file) {
  ByteReader in(file);
  const std::int32_t stored = DecodeHeaderFileStart(in);
  if (in.Short()) return std::nullopt;
  const auto count = static_cast<std::size_t>(std::max(stored, 0));
  if (in.Remaining() / kNoteHeaderSize < count) return std::nullopt;
  std::vector<NoteHeader> headers;
  headers.reserve(count);
  for (std::size_t i = 0; i < count; ++i) headers.push_back(DecodeNoteHeader(in));
  return headers;
}

std::string_view SubjectOf(const NoteHeader& header, std::string_view contents) {
  return Part(contents, header.subjectOffset, header.subjectSize);
}

std::string_view BodyOf(const NoteHeader& header, std::string_view contents) {
  return Part(contents, std::uint64_t{header.subjectOffset} + header.subjectSize, header.bodySize);
}

std::uint64_t TextSize(const NoteHeader& header, std::uint64_t contentSize) {
  const std::uint64_t behind =
      contentSize - std::min<std::uint64_t>(header.subjectOffset, contentSize);
  return std::min(std::uint64_t{header.subjectSize} + header.bodySize, behind);
}

}  // namespace pw::memo
