#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "tests/support/bytes.h"

// Memo binders laid out byte by byte, apart from the codec that they test.
namespace pw::test {

struct SectionBytes {
  std::string name;
  std::int64_t id = 0;
  std::int64_t noteCount = 7;  // not looked at
  char flag = '\x90';

  std::string Build() const {
    std::string field = name;
    field.resize(25);
    return field + Word(noteCount, 4) + flag + Word(id, 2);
  }
};

struct NoteBytes {
  std::int64_t id = 0;
  std::int64_t sectionId = 0;
  std::string subject;
  std::string body;
  std::int64_t lastChange = 0;
  std::string firstBytes = std::string(2, '\0');
  std::string lastBytes = std::string(8, '\0');

  std::string Header(std::int64_t offset) const {
    return firstBytes + Word(sectionId, 2) + Word(id, 4) + Word(offset, 4) +
           Word(static_cast<std::int64_t>(subject.size()), 4) +
           Word(static_cast<std::int64_t>(body.size()), 4) + Word(lastChange, 4) + lastBytes;
  }
};

struct BinderBytes {
  std::vector<SectionBytes> sections;
  std::vector<NoteBytes> notes;

  std::string Sections() const {
    std::string bytes = Word(static_cast<std::int64_t>(sections.size()), 2);
    for (const SectionBytes& section : sections) bytes += section.Build();
    return bytes;
  }
  std::string Headers() const {
    std::string bytes = "WMW300" + Word(static_cast<std::int64_t>(notes.size()), 4);
    std::size_t offset = 0;
    for (const NoteBytes& note : notes) {
      bytes += note.Header(static_cast<std::int64_t>(offset));
      offset += note.subject.size() + note.body.size();
    }
    return bytes;
  }
  std::string Contents() const {
    std::string bytes;
    for (const NoteBytes& note : notes) bytes += note.subject + note.body;
    return bytes;
  }
};

// Puts the binder's three files under a stem, in memory or in a folder.
template <class Files>
void PutBinder(Files& files, const std::string& stem, const BinderBytes& binder) {
  files.Put(stem + ".WMWrite", binder.Sections());
  files.Put(stem + ".WMNoteHeader", binder.Headers());
  files.Put(stem + ".WMContent", binder.Contents());
}

// The smallest rich text of a text.
inline std::string RichOf(const std::string& text) {
  return "{\\rtf1 " + text + "}";
}

// Two sections with notes in each, in the order of a save, and with all that must be carried.
inline BinderBytes TwoSections() {
  BinderBytes binder;
  binder.sections = {{"Work", 0, 2}, {"Caf\xE9", 7, 1, '\x11'}};
  binder.notes = {
      {900000000, 0, RichOf("Plan"), RichOf("line\\par line"), 900000001, "\x01\x02", "unknown!"},
      {900000005, 0, "plain subject", "", 900000005},
      {-3, 7, RichOf("Trip"), std::string("{\\rtf1 \\bin3 \0}}pack}\0tail", 26), -1},
  };
  return binder;
}

}  // namespace pw::test
