#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "base/cursor.h"

// The bytes of a memo binder: three files with one stem. All numbers are little-endian; names are
// single bytes of the organiser's code page.
namespace pw::memo {

inline constexpr const char* kSectionFile = ".WMWrite";
inline constexpr const char* kHeaderFile = ".WMNoteHeader";
inline constexpr const char* kContentFile = ".WMContent";

// A binder with larger files isn't opened.
inline constexpr std::uint64_t kLargestHeaders = 256 << 20;
inline constexpr std::uint64_t kLargestContents = 1 << 30;

// Section record.
//
//   offset  width  field      meaning
//   0       25     name       text, zeros behind it
//   25      4      noteCount  notes of the section; 1 in a new one, which has none yet
//   29      1      flag       0x90 in a new section, carried otherwise
//   30      2      id         what its notes know it by; 0 in the first section of a new binder
inline constexpr std::size_t kNameSize = 25;
inline constexpr std::size_t kLongestName = kNameSize - 1;
inline constexpr std::size_t kSectionSize = kNameSize + 4 + 1 + 2;
inline constexpr std::int32_t kNewNoteCount = 1;
inline constexpr std::uint8_t kNewFlag = 0x90;
struct Section {
  std::string name;  // up to its first zero; a field without one gives all of its 25 bytes
  std::int32_t noteCount = kNewNoteCount;
  std::uint8_t flag = kNewFlag;
  std::uint16_t id = 0;
};
Section DecodeSection(ByteReader& in);
void EncodeSection(ByteWriter& out, const Section& section);  // cuts the name to 24 bytes

// The file of the sections.
//
//   file := count16 section{count}      count is signed, and above 0
//
// Without any section the file is empty. Nothing comes of one that is shorter than it says, or has
// no section.
inline constexpr std::size_t kLargestSectionFile = 2 + 0x7FFF * kSectionSize;
std::optional<std::vector<Section>> DecodeSections(std::string_view file);
std::string EncodeSections(const std::vector<Section>& sections);

// Note header.
//
//   offset  width  field          meaning
//   0       1      first          0 in a new note, carried otherwise
//   1       1      second         0 in a new note, carried otherwise
//   2       2      sectionId      of the section that the note is in
//   4       4      id             of the note, unique in its binder
//   8       4      subjectOffset  of the subject in the file of contents
//   12      4      subjectSize    bytes
//   16      4      bodySize       bytes; the body stands behind the subject
//   20      4      lastChange     seconds since 1970 UTC
//   24      8      unknown        0 in a new note, carried otherwise
inline constexpr std::size_t kUnknownSize = 8;
inline constexpr std::size_t kNoteHeaderSize = 1 + 1 + 2 + 4 + 4 + 4 + 4 + 4 + kUnknownSize;
struct NoteHeader {
  std::uint8_t first = 0;
  std::uint8_t second = 0;
  std::uint16_t sectionId = 0;
  std::int32_t id = 0;
  std::uint32_t subjectOffset = 0;
  std::uint32_t subjectSize = 0;
  std::uint32_t bodySize = 0;
  std::int32_t lastChange = 0;
  std::array<char, kUnknownSize> unknown{};
};
NoteHeader DecodeNoteHeader(ByteReader& in);
void EncodeNoteHeader(ByteWriter& out, const NoteHeader& header);

// What the file of the headers begins with.
//
//   offset  width  field      meaning
//   0       6      magic      "WMW300", not looked at
//   6       4      noteCount  of all sections; a negative one is none
//
//   file := start header{noteCount}     grouped by section, in the order of the sections
inline constexpr std::string_view kMagic = "WMW300";
inline constexpr std::size_t kHeaderFileStartSize = kMagic.size() + 4;
std::int32_t DecodeHeaderFileStart(ByteReader& in);
void EncodeHeaderFileStart(ByteWriter& out, std::int32_t noteCount);

// The file of a binder without notes.
std::string EncodeEmptyHeaderFile();

// A file of a binder: what its name ends in, and its bytes.
struct BinderPart {
  const char* extension;
  std::string bytes;
};

// The three files of a new binder with these sections and no notes.
std::vector<BinderPart> NewBinder(const std::vector<std::string>& sectionNames);

// The headers of a file; nothing for one that is shorter than it says.
std::optional<std::vector<NoteHeader>> DecodeNoteHeaders(std::string_view file);

// The file of the contents has each note's subject and body, rich texts without anything between
// or behind them, in the order of the headers. These are the parts of a note as far as the file
// reaches.
std::string_view SubjectOf(const NoteHeader& header, std::string_view contents);
std::string_view BodyOf(const NoteHeader& header, std::string_view contents);

// How many bytes of both together a file of contents of that size has.
std::uint64_t TextSize(const NoteHeader& header, std::uint64_t contentSize);

}  // namespace pw::memo
