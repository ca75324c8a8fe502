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

// Whether all of a note's text is there.
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
                  " in all",
              header.subjectOffset < contents.size() ? 0 : 1);
  }
}

std::uint64_t ClaimedBytes(const std::vector<memo::NoteHeader>& headers,
                           std::string_view contents) {
  std::uint64_t claimed = 0;
  for (const memo::NoteHeader& header : headers) {
    claimed += memo::SubjectOf(header, contents).size() + memo::BodyOf(header, contents).size();
  }
  return claimed;
}

// Two of one name can't be told apart by where they are found: the first one is meant.
void CheckNames(const std::vector<memo::Section>& sections, FileCheck& check) {
  std::unordered_set<std::string> names;
  for (std::size_t i = 0; i < sections.size(); ++i) {
    const std::string& name = sections[i].name;
    const std::uint64_t offset = 2 + i * memo::kSectionSize;
    const std::string text = "section \"" + CodePageToUtf8(name) + "\" ";
    if (!names.insert(name).second) {
      check.Add(offset, text + "has the name of another one, and can't be reached");
    }
    if (name.size() > memo::kLongestName) {
      check.Add(offset, text + "has a name of 25 bytes, of which the next save keeps 24");
    }
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
  CheckNames(*sections, check);
  const std::size_t end = 2 + sections->size() * memo::kSectionSize;
  if (const std::size_t more = (bytes.size() - end) / memo::kSectionSize) {
    check.Add(end, "the end was expected here; the next save cuts off " +
                       Counted(more, "section", "sections"));
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
    return check;
  }
  if (bytes.substr(0, memo::kMagic.size()) != memo::kMagic) {
    check.Add(0, "\"WMW300\" was expected here");
  }
  const std::uint64_t end = OffsetOfHeader(headers->size());
  if (const std::size_t more = (bytes.size() - end) / memo::kNoteHeaderSize) {
    check.Add(end, "the end was expected here, behind as many notes as are counted", more);
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
  const std::uint64_t claimed = ClaimedBytes(*headers, *binder.contents);
  if (claimed > binder.contents->size()) {
    check.Add(std::nullopt, "the notes claim " + std::to_string(claimed) +
                                " bytes of text, and there are " +
                                std::to_string(binder.contents->size()) +
                                ": some have the same; a save writes them apart");
  }
}

bool DoNotesShareTexts(std::string_view headers, std::string_view contents) {
  const auto notes = memo::DecodeNoteHeaders(headers);
  return notes && ClaimedBytes(*notes, contents) > contents.size();
}

}  // namespace pw
