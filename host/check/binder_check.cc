#include "host/check/binder_check.h"

#include <algorithm>
#include <cstdint>
#include <string>
#include <unordered_set>
#include <vector>

#include "base/codepage.h"
#include "base/cursor.h"
#include "host/counted.h"
#include "memo/format.h"

namespace pw {
namespace {

std::uint64_t OffsetOfHeader(std::size_t note) {
  return memo::kHeaderFileStartSize + note * memo::kNoteHeaderSize;
}

std::string NameOf(std::size_t note, const memo::NoteHeader& header) {
  return "note " + std::to_string(note + 1) + " (id " + std::to_string(header.id) + ")";
}

// Where a text ends that begins at an offset.
bool IsWithin(std::string_view contents, const memo::NoteHeader& header) {
  const std::uint64_t size = std::uint64_t{header.subjectSize} + header.bodySize;
  return size == 0 || header.subjectOffset + size <= contents.size();
}

void CheckSectionsOfNotes(const std::vector<memo::Section>& sections,
                          const std::vector<memo::NoteHeader>& headers, FileCheck& check) {
  std::unordered_set<std::uint16_t> ids;
  for (const memo::Section& section : sections) ids.insert(section.id);
  const auto orphan =
      std::find_if(headers.begin(), headers.end(),
                   [&](const memo::NoteHeader& each) { return ids.count(each.sectionId) == 0; });
  if (orphan == headers.end()) return;
  const auto note = static_cast<std::size_t>(orphan - headers.begin());
  check.Add(OffsetOfHeader(note),
            NameOf(note, *orphan) + " is of section " + std::to_string(orphan->sectionId) +
                ", which the binder hasn't got; a save leaves out this note and all behind it, and "
                "the binder can't be opened any more",
            headers.size() - note);
}

void CheckTexts(std::string_view contents, const std::vector<memo::NoteHeader>& headers,
                FileCheck& check) {
  for (std::size_t note = 0; note < headers.size(); ++note) {
    const memo::NoteHeader& header = headers[note];
    if (IsWithin(contents, header)) continue;
    check.Add(OffsetOfHeader(note),
              NameOf(note, header) + " has its text at " + std::to_string(header.subjectOffset) +
                  ", " + std::to_string(std::uint64_t{header.subjectSize} + header.bodySize) +
                  " bytes; the file of the texts has " + std::to_string(contents.size()) +
                  " in all");
  }
}

}  // namespace

FileCheck CheckSectionFile(std::string_view bytes) {
  FileCheck check;
  const auto sections = memo::DecodeSections(bytes);
  check.holds = "sections of memos: " + std::to_string(sections ? sections->size() : 0);
  if (!sections) {
    check.Add(0, "a count above 0, and as many sections of " + std::to_string(memo::kSectionSize) +
                     " bytes, were expected here; the binder can't be opened");
    return check;
  }
  std::unordered_set<std::uint16_t> ids;
  for (std::size_t i = 0; i < sections->size(); ++i) {
    const memo::Section& section = (*sections)[i];
    if (ids.insert(section.id).second) continue;
    check.Add(2 + i * memo::kSectionSize, "section \"" + CodePageToUtf8(section.name) +
                                              "\" has the id " + std::to_string(section.id) +
                                              ", which is another's already");
  }
  return check;
}

FileCheck CheckNoteHeaders(std::string_view bytes) {
  FileCheck check;
  const auto headers = memo::DecodeNoteHeaders(bytes);
  check.records = headers ? headers->size() : 0;
  check.holds = "memos: " + Counted(check.records, "note", "notes");
  if (!headers) {
    check.Add(bytes.size(), "more notes were expected; the binder can't be opened");
  } else if (bytes.substr(0, memo::kMagic.size()) != memo::kMagic) {
    check.Add(0, "\"WMW300\" was expected here");
  }
  return check;
}

FileCheck CheckNoteContents(std::string_view bytes) {
  FileCheck check;
  check.holds = "texts of memos: " + Counted(bytes.size(), "byte", "bytes");
  return check;
}

void CheckBinder(const BinderBytes& binder, FileCheck& check) {
  if (!binder.sections || !binder.headers || !binder.contents) {
    check.Add(std::nullopt,
              "a binder is three files, \".WMWrite\", \".WMNoteHeader\" and \".WMContent\"; as one "
              "is missing the others can't be opened");
    return;
  }
  const auto sections = memo::DecodeSections(*binder.sections);
  const auto headers = memo::DecodeNoteHeaders(*binder.headers);
  if (!headers) return;
  if (sections) CheckSectionsOfNotes(*sections, *headers, check);
  CheckTexts(*binder.contents, *headers, check);
}

}  // namespace pw
