#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "base/id_index.h"
#include "base/slot_ranks.h"
#include "framework/object.h"
#include "memo/format.h"
#include "memo/note.h"

namespace pw {
class File;
}

// A memo binder: sections, and the notes of all of them in one list. Wholly in memory between
// `Open` and `Save`, while its three files stay open. Notes are known by their index, from 0.
class WMBinder : public PWObject {
 public:
  static constexpr std::int32_t kFailed = -1;
  static constexpr std::int32_t kNoSectionFile = 0x271B;
  static constexpr std::int32_t kNoHeaderFile = 0x271C;
  static constexpr std::int32_t kNoContentFile = 0x271D;
  static constexpr std::int32_t kEmptySectionFile = 0x2715;
  static constexpr std::int32_t kEmptyHeaderFile = 0x2716;

  WMBinder();
  ~WMBinder() override;
  WMBinder(const WMBinder&) = delete;
  WMBinder& operator=(const WMBinder&) = delete;

  // Reads the files of a stem, once for each object. 0; or what is wrong with the last file that
  // can't be opened for reading and writing or is empty; or -1 for one that holds less than it says
  // or is too large. Notes whose texts aren't where the file says have what there
  // is of them.
  std::int32_t Open(const std::string& stem);

  // Rewrites the files through what `Open` opened, the notes by their sections. The notes behind
  // one of no section, and that note, are left out; the files then count them and can't be opened
  // again. 0; or -1, and nothing written, if nothing was changed, the binder isn't open, or its
  // texts would outgrow their 32-bit offsets. Says nothing of a failure to write.
  std::int32_t Save();

  // Takes plain texts. 0; or -1, and nothing changed, if the binder isn't open, there is no such
  // note, or a text is too large.
  std::int32_t AddNote(const std::string& subject, const std::string& body,
                       std::uint16_t sectionId);
  std::int32_t UpdateNote(std::uint32_t index, const std::string& subject, const std::string& body);
  std::int32_t DeleteNote(std::uint32_t index);

  // The name is cut to 24 bytes when it is saved. 0, or -1 for a binder that is full of sections.
  std::int32_t AddSection(const std::string& name);

  // Lets the files go.
  void Close();

  bool IsValid() const { return isValid; }
  const std::vector<pw::memo::Section>& Sections() const { return sections; }

  // The id of the first section of exactly that name.
  std::optional<std::uint16_t> FindSection(const std::string& name) const;

  std::uint32_t NoteCount() const { return static_cast<std::uint32_t>(ranks.Count()); }

  // The index must be below the count.
  const WMNote& Note(std::uint32_t index) const { return *notes[ranks.SlotAt(index)]; }

  // Index of the first note of that id in that section.
  std::optional<std::uint32_t> FindNote(std::int32_t id, std::uint16_t sectionId);

 private:
  std::int32_t OpenFiles(const std::string& stem);
  bool Load();
  void Append(std::unique_ptr<WMNote> note);
  pw::IdIndex& Ids();
  std::vector<std::vector<WMNote*>> GroupNotes();
  static bool PlaceTexts(const std::vector<std::vector<WMNote*>>& groups);

  std::unique_ptr<pw::File> sectionFile;
  std::unique_ptr<pw::File> headerFile;
  std::unique_ptr<pw::File> contentFile;
  std::string contents;  // as loaded, which the notes point into
  std::vector<pw::memo::Section> sections;
  std::vector<std::unique_ptr<WMNote>> notes;  // by slot; null where one was deleted
  pw::SlotRanks ranks;
  std::optional<pw::IdIndex> ids;  // built on first need
  std::int32_t highestId = 0;
  bool isValid = false;
  bool isDirty = false;
};
